#include "diag/command_frame.h"

#include <algorithm>

#include "diag/command.h"

namespace {

/// The length field of a test command's header: fixed per command id, 0 for ids not listed.
struct RequestLength {
    unsigned short iCommandId;
    unsigned short iLength;
};

constexpr RequestLength kCdma2000Lengths[] = {{100, 10}, {102, 18}, {103, 23}, {104, 16}, {105, 16},
                                              {110, 19}, {111, 23}, {120, 37}, {121, 39}};
constexpr RequestLength kEvdoLengths[] = {{113, 24}, {114, 10}, {115, 16}, {116, 36}, {117, 47}, {118, 10},
                                          {122, 8},  {124, 2},  {125, 31}, {126, 42}, {127, 9}};

unsigned short LengthOf(std::span<const RequestLength> lengths, unsigned short iCommandId) {
    const auto found = std::find_if(lengths.begin(), lengths.end(), [&](const RequestLength& entry) {
        return entry.iCommandId == iCommandId;
    });
    return found == lengths.end() ? 0 : found->iLength;
}

constexpr unsigned short kGsdiCommand = 72;
constexpr size_t kGsdiDataSize = 16;

} // namespace

void CommandFrame::NoteFailure(const OperationFailure& failure) {
    if (m_lastFailure.eKind == OperationFailure::Kind::None)
        m_lastFailure = failure;
}

bool CommandFrame::Exchange(unsigned char iExpected, DWORD iReadDelay_ms) {
    return m_connection.SendSync(m_buffer.RequestLength(), m_buffer.RequestBytes(),
                                 &m_buffer.ResponseLength(), m_buffer.ResponseBytes(), iExpected,
                                 m_access.TimeOut_ms(QMSL_TimeOut_SyncRequest), iReadDelay_ms);
}

bool CommandFrame::SendExpectingCommandType() {
    const auto iCommandType = static_cast<unsigned char>(m_eCommandType);
    return Exchange(iCommandType, 0) && ResponseByteIs(0, iCommandType);
}

bool CommandFrame::ResponseByteIs(size_t iOffset, unsigned iValue) {
    unsigned char iByte = 0;
    return Response().U8At(iOffset, iByte) && iByte == (iValue & 0xFF);
}

bool CommandFrame::Send(DWORD iReadDelay_ms) {
    return Exchange(m_buffer.RequestBytes()[0], iReadDelay_ms);
}

bool CommandFrame::SendWithDifferentResponseCmd(unsigned char iExpected, DWORD iReadDelay_ms) {
    return m_access.SendSyncExpecting(m_buffer.RequestLength(), m_buffer.RequestBytes(),
                                      &m_buffer.ResponseLength(), m_buffer.ResponseBytes(), iExpected,
                                      m_access.TimeOut_ms(QMSL_TimeOut_SyncRequest), iReadDelay_ms);
}

bool CommandFrame::SendFtmCmd() {
    return m_eCommandType == FTM_COMMAND_59 ? SendFtmCmd59() : SendFtmCmd75();
}

bool CommandFrame::SendFtmCmd75() {
    return SendExpectingCommandType() && ResponseByteIs(1, m_iFtmSubsystem) &&
           ResponseByteIs(2, static_cast<unsigned>(m_eSystemMode));
}

bool CommandFrame::SendFtmCmd59() {
    constexpr unsigned short kHeaderSize = 5;
    constexpr size_t kLengthOffset = 3;
    const unsigned short iRequest = m_buffer.RequestLength();
    const auto iPayload = static_cast<unsigned short>(iRequest - std::min(iRequest, kHeaderSize));
    m_buffer.RequestBytes()[kLengthOffset] = static_cast<unsigned char>(iPayload);
    m_buffer.RequestBytes()[kLengthOffset + 1] = static_cast<unsigned char>(iPayload >> 8);
    if (!Exchange(static_cast<unsigned char>(m_eCommandType), 0))
        return false;
    Response().SetPosition(iRequest);
    return ResponseByteIs(0, m_buffer.RequestBytes()[0]) && ResponseByteIs(1, m_buffer.RequestBytes()[1]) &&
           ResponseByteIs(2, m_buffer.RequestBytes()[2]);
}

bool CommandFrame::SendEVDO() {
    return SendExpectingCommandType() && ResponseByteIs(1, m_iFtmSubsystem) &&
           ResponseByteIs(2, FTM_MODE_ID_EVDO) && ResponseByteIs(6, 0);
}

bool CommandFrame::SendCDMA2000() {
    return m_eCommandType == FTM_COMMAND_59 ? SendFtmCmd59() : SendExpectingCommandType();
}

void CommandFrame::SetSystemMode(FTM_Mode_Id_Enum iSystem_Mode) {
    LogLine(*this, LOG_FN, "QLIB_SetSystemMode(iSystem_Mode = %d)()", iSystem_Mode);
    m_eSystemMode = iSystem_Mode;
}

RequestBuilder& CommandFrame::BeginRequest() {
    m_buffer.Clear();
    return m_buffer.Request();
}

RequestBuilder& CommandFrame::FormatFTMHeader() {
    if (m_eCommandType == FTM_COMMAND_75)
        return BeginRequest()
            .U8(FTM_COMMAND_75)
            .U8(m_iFtmSubsystem)
            .U16(static_cast<unsigned>(m_eSystemMode))
            .EndHeader();
    return BeginRequest().U8(static_cast<unsigned>(m_eCommandType)).U16(0x0077).U16(0).EndHeader();
}

RequestBuilder& CommandFrame::FormatExtendedFTMHeader(unsigned short iFirst, unsigned short iSecond,
                                                      unsigned short iThird) {
    return FormatFTMHeader().U16(iFirst).U16(iSecond).U16(iThird).EndHeader();
}

RequestBuilder& CommandFrame::FormatExtendedFTMHeader(unsigned short iMode, unsigned short iFirst,
                                                      unsigned short iSecond, unsigned short iThird) {
    return FormatSubsystemDiagHeader(m_iFtmSubsystem, iMode).U16(iFirst).U16(iSecond).U16(iThird).EndHeader();
}

RequestBuilder& CommandFrame::FormatSubsystemDiagHeader(unsigned char iSubsystem, unsigned short iCommand) {
    return BeginRequest().U8(static_cast<unsigned>(m_eCommandType)).U8(iSubsystem).U16(iCommand).EndHeader();
}

RequestBuilder& CommandFrame::FormatBT_FTMHeader(unsigned short iCommandId, unsigned short iLength) {
    return FormatExtendedFTMHeader(FTM_MODE_ID_BLUETOOTH, iCommandId, iLength, 0);
}

RequestBuilder& CommandFrame::FormatCDMA2000_FTMHeader(unsigned short iCommandId) {
    if (m_eCommandType == FTM_COMMAND_59)
        return m_buffer.Request().U8(FTM_COMMAND_59).U16(iCommandId).U16(0);
    return FormatExtendedFTMHeader(FTM_MODE_ID_CDMA2000, iCommandId, LengthOf(kCdma2000Lengths, iCommandId),
                                   0);
}

RequestBuilder& CommandFrame::FormatEVDO_FTMHeader(unsigned short iCommandId) {
    if (m_eCommandType == FTM_COMMAND_59)
        return m_buffer.Request();
    return FormatExtendedFTMHeader(FTM_MODE_ID_EVDO, iCommandId, LengthOf(kEvdoLengths, iCommandId), 0);
}

RequestBuilder& CommandFrame::FormatAGPS_FTMHeader(unsigned short iCommandId) {
    return FormatExtendedFTMHeader(FTM_MODE_ID_AGPS, iCommandId, 0, 0);
}

RequestBuilder& CommandFrame::FormatPMIC_FTMHeader(unsigned short iCommandId, unsigned char iSubcommandId) {
    return FormatExtendedFTMHeader(FTM_MODE_ID_PMIC, iCommandId, 0, 0).U8(iSubcommandId).EndHeader();
}

RequestBuilder& CommandFrame::FormatAudioFTMHeader(unsigned short iCommandId, unsigned short iRequestLength,
                                                   unsigned short iResponseLength) {
    return FormatExtendedFTMHeader(FTM_MODE_ID_AUDIO, iCommandId, iRequestLength, iResponseLength);
}

RequestBuilder& CommandFrame::FormatCameraFTMHeader(unsigned short iCommandId, unsigned short iRequestLength,
                                                    unsigned short iResponseLength) {
    return FormatExtendedFTMHeader(FTM_MODE_ID_CAMERA, iCommandId, iRequestLength, iResponseLength);
}

RequestBuilder& CommandFrame::FormatRF_CommonHeader(unsigned short iCommandId, unsigned short iRequestLength,
                                                    unsigned short iResponseLength) {
    return FormatExtendedFTMHeader(FTM_MODE_ID_RF_COMMON, iCommandId, iRequestLength, iResponseLength);
}

RequestBuilder& CommandFrame::FormatMF_DiagHeader(unsigned char iCommandId) {
    return BeginRequest()
        .U8(static_cast<unsigned>(m_eCommandType))
        .U8(DIAG_SUBSYSTEM_MEDIA_FLO)
        .U8(iCommandId);
}

RequestBuilder& CommandFrame::FormatGSDI_DiagHeader(DWORD iFirst, DWORD iCommandId, unsigned char iSecond,
                                                    unsigned char bHasData, const unsigned char* pData) {
    constexpr unsigned char aZeros[kGsdiDataSize] = {};
    const unsigned char* pSent = bHasData != 0 && pData != nullptr ? pData : aZeros;
    return BeginRequest()
        .U8(DIAG_SUBSYSTEM_DELAYED)
        .U8(DIAG_SUBSYSTEM_SIM)
        .U16(kGsdiCommand)
        .U32(iFirst)
        .U32(iCommandId)
        .U8(iSecond)
        .U8(bHasData)
        .Bytes({pSent, kGsdiDataSize});
}
