// The words for a serial port that cannot be opened.
#pragma once

#include <string>

#include "platform/export.h"
#include "platform/port_error.h"

/// PortErrorText returns why nothing answers on a port, in words that end a sentence: "port COM5 is held by
/// another program". sPort is the port's name within a sentence. For None: "the handset on port COM5 does not
/// answer".
QUILLET_API std::string PortErrorText(PortError eError, const std::string& sPort);
