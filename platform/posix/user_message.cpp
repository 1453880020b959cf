// A message to the user, shown by the host.
#include "platform/user_message.h"

void ShowUserMessage(const MessageHost& host, std::string sTitle, std::string sText) {
    if (host.pfnRequest != nullptr)
        host.pfnRequest(host.iPluginNumber, RT_MsgOK, sTitle.data(), sText.data(), nullptr, 0);
}
