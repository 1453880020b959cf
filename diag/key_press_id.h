// The phone's key codes.
#pragma once

/// A key code, as the phone's software numbers them (48 to 57 are the digits); 0 is no key. Values are
/// exchanged with the phone unchanged; every value is allowed.
enum KeyPressID : int {};
