#include "diag/phone_state.h"

#include "diag/command.h"
#include "diag/command_codes.h"
#include "diag/simple_command.h"

namespace {

// The sizes of responses after command, subsystem and subsystem command.
constexpr size_t kDisplaySize = 2 + 2 + 1 + 1;
constexpr size_t kGsmStatusSize =
    PhoneState::kImeiSize + PhoneState::kImsiSize + PhoneState::kLaiSize + 2 + 1 + 1 + 1;

enum GsmCommand : unsigned short { GSM_STATUS = 1, GSM_CALL_ORIG = 3, GSM_CALL_END = 4 };

} // namespace

bool PhoneState::DIAG_STATUS_F(unsigned char& iStatus) {
    return SimpleQuery(m_frame, "QLIB_DIAG_STATUS_F()",
                       {DIAG_SUBSYSTEM, DIAG_SUBSYSTEM_CALL_MANAGER, 0x0E, 0x00}) &&
           TakeLast(m_frame, iStatus);
}

bool PhoneState::DIAG_HS_DISPLAY_GET_PARAMS_CMD(unsigned char iDisplayID, unsigned short& iDisplayHeight,
                                                unsigned short& iDisplayWidth, unsigned char& iPixelDepth,
                                                unsigned char& iPanelOrientation) {
    LogLine(m_frame, LOG_FN, "QLIB_DIAG_HS_DISPLAY_GET_PARAMS_CMD( iDisplayID = %d )", iDisplayID);
    m_frame.FormatSubsystemDiagHeader(DIAG_SUBSYSTEM_DISPLAY, 0);
    if (!m_frame.SendForValues())
        return false;
    ResponseReader response = m_frame.Response();
    if (response.HoldsValues(kDisplaySize)) {
        response.Take(iPanelOrientation);
        response.Take(iPixelDepth);
        response.Take(iDisplayWidth);
        response.Take(iDisplayHeight);
        if (response.HoldsValues(kDisplaySize + sizeof iDisplayID))
            response.Take(iDisplayID);
    }
    LogLine(m_frame, LOG_RET,
            "QLIB_DIAG_HS_DISPLAY_GET_PARAMS_CMD( iDisplayID = %d, iDisplayHeight = %d, "
            "iDisplayWidth = %d, iPixelDepth = %d, iPanelOrientation = %d)",
            iDisplayID, iDisplayHeight, iDisplayWidth, iPixelDepth, iPanelOrientation);
    return true;
}

bool PhoneState::DIAG_GSM_STATUS_F(unsigned char* const iIMEI, unsigned char* const iIMSI,
                                   unsigned char* const iLAI, unsigned short& iCellID,
                                   unsigned char& iCM_CallState, unsigned char& iCM_OperationalMode,
                                   unsigned char& iCM_SystemMode) {
    LogLine(m_frame, LOG_FN, "QLIB_DIAG_GSM_GSM_STATUS_F( )");
    m_frame.FormatSubsystemDiagHeader(DIAG_SUBSYSTEM_GSM, GSM_STATUS);
    if (!m_frame.Send(0))
        return false;
    ResponseReader response = m_frame.Response();
    if (!response.HoldsValues(kGsmStatusSize)) {
        LogLine(m_frame, LOG_RET, "QLIB_DIAG_TMC_STATE_RETRIEVAL_F() -- response packet size is not valid");
        return false;
    }
    response.Take(iCM_SystemMode);
    response.Take(iCM_OperationalMode);
    response.Take(iCM_CallState);
    response.Take(iCellID);
    response.Take({iLAI, kLaiSize});
    response.Take({iIMSI, kImsiSize});
    response.Take({iIMEI, kImeiSize});
    LogLine(m_frame, LOG_RET,
            "QLIB_DIAG_TMC_STATE_RETRIEVAL_F(iIMEI[0] = 0x%X, iIMSI[0] = 0x%X, "
            "iLAI[0] = 0x%X,  iCellID = 0x%X, iCM_CallState = 0x%X, "
            "iCM_OperationalMode = 0x%X, iCM_SystemMode = 0x%X)",
            iIMEI[0], iIMSI[0], iLAI[0], iCellID, iCM_CallState, iCM_OperationalMode, iCM_SystemMode);
    return true;
}

bool PhoneState::DIAG_GSM_CALL_ORIG_F(unsigned char iNumDigits, const unsigned char* const iDigits) {
    LogLine(m_frame, LOG_FN, "QLIB_DIAG_GSM_CALL_ORIG_F( iNumDigits = %d )", iNumDigits);
    m_frame.FormatSubsystemDiagHeader(DIAG_SUBSYSTEM_GSM, GSM_CALL_ORIG)
        .U8(iNumDigits)
        .Bytes({iDigits, kDigitCount});
    return m_frame.Send(0);
}

bool PhoneState::DIAG_GSM_CALL_END_F() {
    LogLine(m_frame, LOG_FN, "QLIB_DIAG_GSM_CALL_END_F( )");
    m_frame.FormatSubsystemDiagHeader(DIAG_SUBSYSTEM_GSM, GSM_CALL_END);
    return m_frame.Send(0);
}
