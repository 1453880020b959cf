#include "efs2/exchange.h"

#include "diag/command.h"
#include "efs2/commands.h"

namespace {

constexpr DWORD kTimeOut_ms = 2000;

} // namespace

bool Efs2Exchange::Exchange() {
    if (!m_builder.Complete())
        return false;
    auto iLength = static_cast<unsigned short>(m_response.size());
    if (!m_frame.Connection().SendSync(m_iRequestLength, m_request.data(), &iLength, m_response.data(),
                                       DIAG_SUBSYSTEM, kTimeOut_ms, 0))
        return false;
    m_iResponseLength = iLength;
    m_iReadPosition = 0;
    return true;
}

bool Efs2Exchange::ExchangeUntilGranted(int iAttempts, size_t iErrnumOffset) {
    return ExchangeUntil(iAttempts, [iErrnumOffset](const ResponseReader& response) {
        DWORD iErrnum = 0;
        return response.U32At(iErrnumOffset, iErrnum) && iErrnum == 0;
    });
}

RequestBuilder& BeginEfs2Request(CommandFrame& frame, EFS2_Cmd_Enum eCommand) {
    return frame.BeginRequest().U8(DIAG_SUBSYSTEM).U8(DIAG_SUBSYSTEM_EFS2).U16(eCommand).EndHeader();
}

bool SendWholeRequest(CommandFrame& frame) {
    return frame.Buffer().Request().Complete() && frame.Send(0);
}

bool AskWholeRequest(CommandFrame& frame) {
    return frame.Buffer().Request().Complete() && frame.AskForValues();
}
