// quillet: a complete client of a phone's diagnostic protocol, for programs that link quillet.wfx.
//
//     #include <quillet.h>
//     Diag_FTM phone(5);                     // COM5
//     if (phone.IsPhoneConnected())
//         phone.EFS2_DIAG_ENUM_DIR("");      // entries arrive through ConfigureEfsCallbacks
//
// The main page of the reference describes what holds everywhere: results, reasons, threads, units,
// ownership.
#pragma once

#include "efs2/failure_text.h"
#include "link/event_listener.h"
#include "link/event_names.h"
#include "link/message_queue.h"
#include "link/port_error_text.h"
#include "link/text_log.h"
#include "portserver/efs.h"
#include "portserver/qpst_server.h"
#include "portserver/software_download.h"
#include "qlib/call_layer.h"
#include "qlib/diag_ftm.h"
#include "qlib/resource_manager.h"
