#include "diag/service.h"

#include "diag/command.h"
#include "diag/command_codes.h"
#include "diag/simple_command.h"

bool PhoneService::DIAG_ERR_READ_F(QLIB_DIAG_Err_Read& errorLog) {
    if (!SimpleQuery(m_frame, "QLIB_DIAG_ERR_READ_F()", {DIAG_ERROR_READ}))
        return false;
    if (m_frame.Response().HoldsValues(sizeof errorLog))
        m_frame.Response().Take(errorLog.aData);
    return true;
}

bool PhoneService::DIAG_ERR_CLEAR_F(unsigned char iRecord) {
    return SimpleCommand(m_frame, "QLIB_DIAG_ERR_CLEAR_F()", {DIAG_ERROR_CLEAR, iRecord});
}

bool PhoneService::DIAG_CONTROL_F(mode_enum_type eMode) {
    LogLine(m_frame, LOG_FN, "QLIB_DIAG_CONTROL_F(eMode=%d)", static_cast<int>(eMode));
    m_frame.BeginRequest().U8(DIAG_CONTROL).S16(eMode);
    return m_frame.Send(0);
}

bool PhoneService::DIAG_DLOAD_F() {
    return SimpleCommand(m_frame, "QLIB_DIAG_DLOAD_F()", {DIAG_DOWNLOAD_MODE});
}

bool PhoneService::DIAG_SECURITY_FREEZE_F() {
    return SimpleCommand(m_frame, "QLIB_DIAG_SECURITY_FREEZE_F()", {DIAG_FREEZE});
}

bool PhoneService::DIAG_SPC_F(const unsigned char* const iSPC, unsigned char& iResult) {
    constexpr size_t kCodeSize = 6;
    LogLine(m_frame, LOG_FN, "QLIB_SPC( iSPC[6] = %c%c%c%c%c%c)", iSPC[0], iSPC[1], iSPC[2], iSPC[3], iSPC[4],
            iSPC[5]);
    m_frame.BeginRequest().U8(DIAG_SERVICE_CODE).EndHeader().Bytes({iSPC, kCodeSize});
    return m_frame.Send(0) && m_frame.Response().Take(iResult);
}

bool PhoneService::SendSwitches(unsigned short iSwitchValues) {
    m_frame.BeginRequest().U8(DIAG_DIP_SWITCHES).EndHeader().U16(iSwitchValues);
    return m_frame.Send(0);
}

bool PhoneService::DIAG_GET_DIPSW_F(unsigned short& iSwitchValues) {
    LogLine(m_frame, LOG_FN, "QLIB_DIAG_GET_DIPSW_F -- Start");
    if (!SendSwitches(iSwitchValues) || !m_frame.Response().HoldsValues())
        return false;
    TakeLast(m_frame, iSwitchValues);
    LogLine(m_frame, LOG_RET, "QLIB_DIAG_GET_DIPSW_F -- completed ( iSwitchValues = 0x%X)", iSwitchValues);
    return true;
}

bool PhoneService::DIAG_SET_DIPSW_F(unsigned short iSwitchValues) {
    LogLine(m_frame, LOG_FN, "QLIB_DIAG_SET_DIPSW_F( iSwitchValues = 0x%X)", iSwitchValues);
    return SendSwitches(iSwitchValues);
}

bool PhoneService::DIAG_HS_KEY_F(KeyPressID iKey, unsigned char iHold) {
    LogLine(m_frame, LOG_FN, "QLIB_DIAG_HS_KEY_F(iKey=%d, iHold=%d)", static_cast<int>(iKey), iHold);
    m_frame.BeginRequest().U8(DIAG_HANDSET_KEY).U8(iHold).S8(iKey);
    return m_frame.Send(0);
}
