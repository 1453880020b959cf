// Why a serial port cannot be opened.
#pragma once

/// PortError is the reason for which a serial port could not be opened.
enum class PortError {
    None,         // it could, or nobody tried
    Held,         // another program holds it
    NoSuchPort,   // it is gone, or was never there
    NoPermission, // the user may not open it
    Other,        // the driver refused something
};
