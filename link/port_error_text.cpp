#include "link/port_error_text.h"

std::string PortErrorText(PortError eError, const std::string& sPort) {
    switch (eError) {
        case PortError::None:
            return "the handset on " + sPort + " does not answer";
        case PortError::Held:
            return sPort + " is held by another program";
        case PortError::NoSuchPort:
            return sPort + " is gone";
        case PortError::NoPermission:
            return "no permission to open " + sPort;
        case PortError::Other:
            break;
    }
    return sPort + " cannot be opened";
}
