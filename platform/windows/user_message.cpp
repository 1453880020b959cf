// A message to the user: a message box.
#include "platform/user_message.h"

void ShowUserMessage(const MessageHost& host, std::string sTitle, std::string sText) {
    // A box for a window that is gone would not be shown at all.
    HWND hOwner = IsWindow(host.hOwner) ? host.hOwner : nullptr;
    MessageBoxA(hOwner, sText.c_str(), sTitle.c_str(), MB_OK);
}
