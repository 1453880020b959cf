// The operations of a connection that need a serial line, apart from requests.
#include "link/connection_state.h"
#include "link/diag_connection.h"
#include "link/packet_codes.h"
#include "link/packet_view.h"

namespace {

constexpr DWORD kDataModeTimeOut_ms = 80;
constexpr size_t kModeOffset = 1; // in the response: the mode that the phone is in now

} // namespace

SerialControls* DiagConnection::SerialFor(const char* sOperation) {
    SerialControls* const pSerial = m_pState->pLine->Serial();
    if (pSerial == nullptr)
        m_pState->textLog.LogMessage(LOG_RET, "QLIB_%s() : FAIL in QPST mode", sOperation);
    return pSerial;
}

SerialControls* DiagConnection::OpenSerialFor(const char* sOperation) {
    SerialControls* const pSerial = SerialFor(sOperation);
    return pSerial != nullptr && VerifyConnectionIsValid() ? pSerial : nullptr;
}

bool DiagConnection::SetStartFlag(bool bStartFlag) {
    m_pState->textLog.LogMessage(LOG_FN, "QLIB_SetStartFlag(bStartFlag=%d )", bStartFlag ? 1 : 0);
    SerialControls* const pSerial = OpenSerialFor("SetStartFlag");
    if (pSerial == nullptr)
        return false;
    m_pState->textLog.LogMessage(LOG_IO, "START_FLAG = %s", bStartFlag ? "ON" : "OFF");
    return pSerial->SetStartFlag(bStartFlag);
}

bool DiagConnection::SetPacketMode(int iPacketMode) {
    m_pState->textLog.LogMessage(LOG_FN, "QLIB_SetPacketMode(iPacketMode=%d )", iPacketMode);
    if (iPacketMode < 0 || iPacketMode > 2) {
        m_pState->textLog.LogMessage(LOG_FN, "QLIB_SetPacketMode() -  Error, Invalid packet mode");
        return false;
    }
    SerialControls* const pSerial = OpenSerialFor("SetPacketMode");
    if (pSerial == nullptr)
        return false;
    const int iFormerMode = pSerial->GetPacketMode();
    if (iFormerMode == 0 && iPacketMode == 1 && !SwitchPhoneToDataMode())
        return false;
    if (iFormerMode == 1 && iPacketMode == 0 && !m_pState->pLine->SwitchToDiagMode())
        return false;
    m_pState->bData2DiagSearch = iPacketMode == 0;
    m_pState->textLog.LogMessage(LOG_IO, "RAW_DATA_FLAG = %s", iPacketMode != 0 ? "ON" : "OFF");
    pSerial->SetPacketMode(iPacketMode);
    return true;
}

bool DiagConnection::SwitchPhoneToDataMode() {
    unsigned char aResponse[kMaxPacketSize];
    unsigned short iSize = sizeof aResponse;
    return SendSync(1, &kDataModeRequest, &iSize, aResponse, kDataModeRequest, kDataModeTimeOut_ms, 0) &&
           PacketView({aResponse, iSize}).U8(kModeOffset) == 1;
}

bool DiagConnection::SetDTR_State(bool bSetDTR_High) {
    m_pState->textLog.LogMessage(LOG_FN, "QLIB_SetDTR_State(bSetDTR_High=%d)", bSetDTR_High ? 1 : 0);
    SerialControls* const pSerial = m_pState->pLine->Serial();
    if (pSerial != nullptr)
        pSerial->SetDTR(bSetDTR_High);
    return pSerial != nullptr;
}

bool DiagConnection::SetRTS_State(bool bSetRTS_High) {
    m_pState->textLog.LogMessage(LOG_FN, "QLIB_SetRTS_State(bSetRTS_High=%d)", bSetRTS_High ? 1 : 0);
    SerialControls* const pSerial = m_pState->pLine->Serial();
    if (pSerial != nullptr)
        pSerial->SetRTS(bSetRTS_High);
    return pSerial != nullptr;
}

bool DiagConnection::FlushRxBuffer() {
    m_pState->textLog.LogMessage(LOG_FN, "QLIB_FlushRxBuffer()");
    SerialControls* const pSerial = m_pState->pLine->Serial();
    if (pSerial != nullptr)
        pSerial->FlushRxBuffer();
    return pSerial != nullptr;
}

bool DiagConnection::SetData2DiagSearch(bool bData2DiagSearch) {
    m_pState->bData2DiagSearch = bData2DiagSearch;
    return true;
}
