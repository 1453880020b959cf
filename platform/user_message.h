// A message to the user.
#pragma once

#include <string>

#include "platform/host_interface.h"

/// Where a message is shown: in front of the host's window or, if the host shows it, through the host's
/// request callback. Either may be null.
struct MessageHost {
    HWND hOwner;
    int iPluginNumber;
    tRequestProc pfnRequest;
};

/// ShowUserMessage shows a text with a title and an OK button, and returns when the user dismisses it. On
/// Windows it is a message box, which dispatches the thread's messages meanwhile; on Linux the host shows it
/// (request callback, RT_MsgOK). Without a callback nothing is shown on Linux, and nothing blocks.
void ShowUserMessage(const MessageHost& host, std::string sTitle, std::string sText);
