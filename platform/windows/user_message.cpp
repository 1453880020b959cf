// A message to the user: a message box.
#include "platform/user_message.h"

void ShowUserMessage(const MessageHost& host, std::string sTitle, std::string sText) {
    // A message box whose owner window no longer exists would not be shown.
    HWND hOwner = IsWindow(host.hOwner) ? host.hOwner : nullptr;
    MessageBoxA(hOwner, sText.c_str(), sTitle.c_str(), MB_OK);
}
