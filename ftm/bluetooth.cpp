#include "ftm/bluetooth.h"

#include <array>
#include <cstring>

#include "ftm/ftm_command.h"
#include "ftm/ftm_log.h"
#include "link/log_codes.h"

namespace {

constexpr unsigned char kHciCommand = 1;

const char* PassOrFail(bool bPassed) {
    return bPassed ? "PASS" : "FAIL";
}

} // namespace

bool FtmBluetooth::FTM_BT_HCI_USER_CMD(const unsigned char* piHCI_Command, unsigned short iLength) {
    LogLine(m_frame, LOG_FN, "QLIB_FTM_BT_HCI_USER_CMD( iLength = %d )", iLength);
    return m_frame.FormatBT_FTMHeader(0, iLength).Bytes({piHCI_Command, iLength}).Complete() &&
           m_frame.Send(0);
}

bool FtmBluetooth::SendHci(unsigned short iOpcode, std::initializer_list<unsigned char> parameters) {
    std::array<unsigned char, 16> aCommand;
    unsigned short iLength = 0;
    RequestBuilder(aCommand, iLength)
        .U8(kHciCommand)
        .U16(iOpcode)
        .U8(static_cast<unsigned>(parameters.size()))
        .Bytes({parameters.begin(), parameters.size()});
    return FTM_BT_HCI_USER_CMD(aCommand.data(), iLength);
}

bool FtmBluetooth::FTM_BT_HCI_USER_CMD_WithEventResponse(const unsigned char* piHCI_Command,
                                                         unsigned short iLength, unsigned char* piEvent,
                                                         unsigned short& iEventLength, DWORD iTimeOut_ms) {
    LogLine(m_frame, LOG_FN, "QLIB_FTM_BT_HCI_USER_CMD_WithEventResponse( iLength = %d, iTimeOut_ms = %d )",
            iLength, iTimeOut_ms);
    const unsigned short iRoom = iEventLength;
    iEventLength = 0;
    if (!m_ftmLog.FTM_LOG_StartFTM_Log(kBluetoothLogType))
        return false;
    const bool bCleared = m_frame.Access().PhoneLogQueue().Clear();
    LogLine(m_frame, LOG_FN, "    DIAG_ClearPhoneLogQueue = %s", PassOrFail(bCleared));
    bool bPassed = FTM_BT_HCI_USER_CMD(piHCI_Command, iLength);
    LogLine(m_frame, LOG_FN, "    FTM_BT_HCI_USER_CMD = %s", PassOrFail(bPassed));
    FTM2LogMessage record;
    unsigned short iSize = 0;
    if (bPassed &&
        (bPassed = m_ftmLog.FTM_LOG_WaitForNextLog(kBluetoothLogType, &record, iSize, iTimeOut_ms))) {
        iEventLength = static_cast<unsigned short>(iSize - FTM2LogMessage::kTail - sizeof record.iLogType);
        bPassed = iEventLength <= iRoom;
        if (bPassed)
            std::memcpy(piEvent, record.aData, iEventLength);
    }
    m_ftmLog.FTM_LOG_StopFTM_Log(kBluetoothLogType);
    return bPassed;
}

bool FtmBluetooth::BT_GetModuleVersion(Bluetooth_LocalVersion_struct& localVersion) {
    constexpr unsigned char aReadLocalVersion[] = {kHciCommand, 0x01, 0x10, 0x00};
    constexpr DWORD kEventWait_ms = 1000;
    LogLine(m_frame, LOG_FN, "QLIB_BT_GetModuleVersion( )");
    unsigned char aEvent[sizeof(FTM2LogMessage)];
    unsigned short iLength = sizeof aEvent;
    const bool bPassed = FTM_BT_HCI_USER_CMD_WithEventResponse(aReadLocalVersion, sizeof aReadLocalVersion,
                                                               aEvent, iLength, kEventWait_ms);
    LogLine(m_frame, LOG_FN, "    FTM_BT_HCI_USER_CMD_WithEventResponse = %s", PassOrFail(bPassed));
    if (iLength < sizeof localVersion) {
        LogLine(m_frame, LOG_RET, "    Size of bluetooth log was incorrect: %d", iLength);
        return false;
    }
    std::memcpy(&localVersion, aEvent, sizeof localVersion);
    return bPassed;
}

bool FtmBluetooth::FTM_BT_Enable_Bluetooth() {
    constexpr unsigned char kInquiryAndPageScan = 3;
    LogLine(m_frame, LOG_FN, "QLIB_FTM_BT_Enable_Bluetooth( )");
    return SendHci(0x0C03, {}) && SendHci(0x0C1A, {kInquiryAndPageScan}) && SendHci(0x1803, {});
}

bool FtmBluetooth::FTM_BT_SetCW(unsigned char iChannel) {
    constexpr unsigned char kPacketLength = 37;
    constexpr unsigned char kAllOnes = 4;
    LogLine(m_frame, LOG_FN, "QLIB_FTM_BT_SetCW( iChannel = %d )", iChannel);
    return SendHci(0x201E, {iChannel, kPacketLength, kAllOnes});
}

bool FtmBluetooth::FTM_BT_SetAddr(const unsigned char* piAddress) {
    LogLine(m_frame, LOG_FN, "QLIB_FTM_BT_SetAddr( piAddress = %02X:%02X:%02X:%02X:%02X:%02X )", piAddress[5],
            piAddress[4], piAddress[3], piAddress[2], piAddress[1], piAddress[0]);
    return SendHci(0x2005,
                   {piAddress[0], piAddress[1], piAddress[2], piAddress[3], piAddress[4], piAddress[5]});
}
