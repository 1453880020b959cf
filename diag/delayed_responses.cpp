#include "diag/delayed_responses.h"

#include "diag/command.h"
#include "diag/command_codes.h"
#include "diag/received_packet.h"
#include "diag/simple_command.h"
#include "link/clock.h"

namespace {

/// The fields after command, subsystem and subsystem command, in the first response and in every delayed one.
struct DelayedHead {
    DWORD iStatus = 0;
    unsigned short iResponseId = 0;
    unsigned short iCount = 0;

    /// False when the packet is too short for them.
    bool Read(const ResponseReader& packet) {
        return packet.U32At(4, iStatus) && packet.U16At(8, iResponseId) && packet.U16At(10, iCount);
    }
};

} // namespace

bool DelayedResponses::DIAG_NV_CNV_DIAG_BACKUP_F() {
    LogLine(m_frame, LOG_FN, "QLIB_DIAG_NV_CNV_DIAG_BACKUP_F()");
    m_frame.BeginRequest().U8(DIAG_SUBSYSTEM_DELAYED).U8(DIAG_SUBSYSTEM_NV_BACKUP).U16(0);
    return SendDiag2WithMultipleResponse(1, 0);
}

bool DelayedResponses::GPS_SET_TEST_MODE_PARAMS(unsigned char iByte1, unsigned char iByte2,
                                                unsigned char iByte3, unsigned char iByte4,
                                                unsigned char iByte5, DWORD iValue1, DWORD iValue2,
                                                DWORD iValue3, DWORD iValue4) {
    LogLine(m_frame, LOG_FN, "QLIB_DIAG_GPS_COLD_START()");
    RequestBuilder& request = m_frame.BeginRequest().U8(DIAG_SUBSYSTEM).U8(DIAG_SUBSYSTEM_GPS).U16(0x0012);
    for (const unsigned char iByte : {iByte1, iByte2, iByte3, iByte4, iByte5})
        request.U8(iByte);
    for (const DWORD iValue : {iValue1, iValue2, iValue3, iValue4, iValue4})
        request.U32(iValue);
    return SendDiag2WithMultipleResponse(1, 0);
}

bool DelayedResponses::HS_DISPLAY_CAPTURE_DELAYED_CMD(unsigned char iDisplayID, unsigned short iStartingRow,
                                                      unsigned short iStartingCol, unsigned short iHeight,
                                                      unsigned short iWidth, const char* sFileName) {
    LogLine(m_frame, LOG_FN, "QLIB_HS_DISPLAY_CAPTURE_DELAYED_CMD( ) -- NOT IMPLEMENTED!!!");
    LogLine(m_frame, LOG_FN,
            "QLIB_HS_DISPLAY_CAPTURE_DELAYED_CMD( iDisplayID = %d, iStartingRow = %d, "
            "iStartingCol = %d, iHeight = %d, iWidth = %d, sFileName = %s)",
            iDisplayID, iStartingRow, iStartingCol, iHeight, iWidth, sFileName);
    RequestBuilder& request = m_frame.BeginRequest()
                                  .U8(DIAG_SUBSYSTEM_DELAYED)
                                  .U8(DIAG_SUBSYSTEM_DISPLAY)
                                  .U16(2)
                                  .U8(iDisplayID)
                                  .U16(iStartingRow)
                                  .U16(iStartingCol)
                                  .U16(iHeight)
                                  .U16(iWidth)
                                  .Text(sFileName);
    return request.Complete() && SendDiag2WithMultipleResponse(1, 0);
}

bool DelayedResponses::SendDiag2WithMultipleResponse(int iNumResponses, DWORD) {
    LogLine(m_frame, LOG_FN, "QLIB_SendDiag2WithMultipleResponse()");
    m_frame.Access().DelayedResponseQueue().Clear();
    unsigned short iResponseId = 0;
    if (!m_frame.Send(0) || !IsAnnounced(iResponseId))
        return false;
    LogLine(m_frame, LOG_RET, "QLIB_SendDiag2WithMultipleResponse()--send successful");
    for (int iAccepted = 0; iAccepted < iNumResponses; ++iAccepted) {
        if (!WaitForOne(iResponseId)) {
            LogLine(m_frame, LOG_RET,
                    "QLIB_SendDiag2WithMultipleResponse()--exit after %d response messages received",
                    iAccepted);
            return false;
        }
    }
    return true;
}

bool DelayedResponses::IsAnnounced(unsigned short& iResponseId) {
    DelayedHead head;
    const bool bComplete = head.Read(m_frame.Response());
    iResponseId = head.iResponseId;
    return bComplete && head.iStatus == 0 && head.iCount == 0 && iResponseId != 0;
}

bool DelayedResponses::WaitForOne(unsigned short iResponseId) {
    const ConnectionAccess& connection = m_frame.Access();
    const DWORD iTimeOut_ms = connection.TimeOut_ms(QMSL_TimeOut_MultipleResponse);
    const DWORD iStart_ms = TickCount_ms();
    QueueItem item;
    for (DWORD iWaited_ms = 0; iWaited_ms < iTimeOut_ms; iWaited_ms = TickCount_ms() - iStart_ms) {
        if (!connection.CommandResponseQueue().WaitPop(&item, iTimeOut_ms - iWaited_ms))
            break;
        if (IsAwaited(item, iResponseId)) {
            connection.DelayedResponseQueue().Push(&item);
            return true;
        }
    }
    return false;
}

bool DelayedResponses::IsAwaited(const QueueItem& item, unsigned short iResponseId) {
    LogLine(m_frame, LOG_RET, "QLIB_SendDiag2WithMultipleResponse()-delayed response detected");
    LogLine(m_frame, LOG_RET, "QLIB_SendDiag2WithMultipleResponse()--delayed response check match");
    unsigned short iPosition = 0;
    DelayedHead head;
    const bool bComplete = head.Read(ResponseReader(WithoutFcs(item), iPosition));
    LogLine(m_frame, LOG_RET, "QLIB_SendDiag2WithMultipleResponse()-- Status: %d, RespID: %d, Count: %d ",
            head.iStatus, head.iResponseId, head.iCount);
    return bComplete && head.iResponseId == iResponseId && head.iStatus == 0;
}
