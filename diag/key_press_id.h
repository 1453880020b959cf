// The phone's key codes.
#pragma once

/// A key of the phone, as its software numbers them (48 to 57 are the digits); 0 is no key. Values go to and
/// come from the phone unchanged, every value is allowed.
enum KeyPressID : int {};
