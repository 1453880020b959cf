// A message to the user.
#pragma once

#include <string>

#include "platform/host_interface.h"

/// Where a message is shown: before the host's window and, where the host has to show it, through its request
/// callback. Either may be null.
struct MessageHost {
    HWND hOwner;
    int iPluginNumber;
    tRequestProc pfnRequest;
};

/// ShowUserMessage shows a text with a title and an OK button, and returns when the user has dismissed it.
/// On Windows that is a message box, which dispatches the thread's messages meanwhile; on Linux the host's
/// own (its request callback, RT_MsgOK): without a callback nothing is shown and nothing blocks.
void ShowUserMessage(const MessageHost& host, std::string sTitle, std::string sText);
