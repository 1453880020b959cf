#include "efs2/exchange.h"

#include "diag/command.h"
#include "efs2/commands.h"

namespace {

constexpr DWORD kTimeOut_ms = 2000;

constexpr size_t kUsualErrnumOffset = 4;

using Kind = OperationFailure::Kind;

/// Where the response to a command has the phone's error number.
size_t ErrnumOffset(EFS2_Cmd_Enum eCommand) {
    switch (eCommand) {
        case EFS2_CMD_OPEN:
        case EFS2_CMD_OPENDIR:
            return 8;
        case EFS2_CMD_READDIR:
            return 12;
        case EFS2_CMD_READ:
        case EFS2_CMD_WRITE:
            return 16;
        default:
            return kUsualErrnumOffset;
    }
}

/// Not all answers to what is built in the buffer pair have one.
bool ResponseHasErrnum(const unsigned char* pRequest) {
    return pRequest[0] == DIAG_SUBSYSTEM && pRequest[2] != EFS2_CMD_EXTENDED_INFO;
}

} // namespace

bool Efs2Exchange::SendOnce() {
    m_bAnswered = false;
    auto iLength = static_cast<unsigned short>(m_response.size());
    if (!m_frame.Connection().SendSync(m_iRequestLength, m_request.data(), &iLength, m_response.data(),
                                       DIAG_SUBSYSTEM, kTimeOut_ms, 0))
        return false;
    m_iResponseLength = iLength;
    m_iReadPosition = 0;
    m_bAnswered = true;
    return true;
}

OperationFailure Efs2Exchange::FailureOfLastAttempt() {
    if (!m_builder.Complete())
        return {Kind::NotSent};
    if (!m_bAnswered)
        return {Kind::NoResponse};
    DWORD iErrnum = 0;
    if (Response().U32At(ErrnumOffset(m_eCommand), iErrnum) && iErrnum != 0)
        return {Kind::Refused, iErrnum};
    return {Kind::UnusableResponse};
}

bool Efs2Exchange::ExchangeUntilGranted(int iAttempts, size_t iErrnumOffset) {
    DWORD iErrnum = 0;
    return ExchangeForVerdict(iAttempts, iErrnumOffset, iErrnum) && iErrnum == 0;
}

bool Efs2Exchange::ExchangeForVerdict(int iAttempts, size_t iErrnumOffset, DWORD& iErrorNo) {
    bool bAnswered = false;
    ExchangeUntil(iAttempts, [&](const ResponseReader& response) {
        const bool bCarriesIt = response.U32At(iErrnumOffset, iErrorNo);
        bAnswered = bAnswered || bCarriesIt;
        return bCarriesIt && iErrorNo == 0;
    });
    return bAnswered;
}

RequestBuilder& BeginEfs2Request(CommandFrame& frame, EFS2_Cmd_Enum eCommand) {
    return frame.BeginRequest().U8(DIAG_SUBSYSTEM).U8(DIAG_SUBSYSTEM_EFS2).U16(eCommand).EndHeader();
}

bool SendWholeRequest(CommandFrame& frame) {
    frame.ForgetFailure();
    if (!frame.Buffer().Request().Complete()) {
        frame.NoteFailure({Kind::NotSent});
        return false;
    }
    if (!frame.Send(0)) {
        frame.NoteFailure({Kind::NoResponse});
        return false;
    }
    DWORD iErrnum = 0;
    if (ResponseHasErrnum(frame.Buffer().RequestBytes()) &&
        frame.Response().U32At(kUsualErrnumOffset, iErrnum) && iErrnum != 0)
        frame.NoteFailure({Kind::Refused, iErrnum});
    return true;
}

bool AskWholeRequest(CommandFrame& frame) {
    if (!SendWholeRequest(frame))
        return false;
    if (!frame.Response().HoldsValues())
        frame.NoteFailure({Kind::UnusableResponse});
    return frame.Response().HoldsValues();
}
