// quillet: the complete client of a handset's diagnostic protocol, for programs that link quillet.wfx.
//
//     #include "quillet.h"
//     Diag_FTM phone(5);                     // COM5
//     if (phone.IsPhoneConnected())
//         phone.EFS2_DIAG_ENUM_DIR("");      // entries arrive through ConfigureEfsCallbacks
//
// Conventions (errors, ownership, threads, units, text encoding) stand in docs/ARCHITECTURE.md.
#pragma once

#include "efs2/failure_text.h"
#include "link/event_names.h"
#include "portserver/efs.h"
#include "portserver/qpst_server.h"
#include "portserver/software_download.h"
#include "qlib/call_layer.h"
#include "qlib/diag_ftm.h"
#include "qlib/resource_manager.h"
