// The frame of every diagnostic command: the buffer pair, the exchange, and the factory-test headers.
#pragma once

#include "diag/command_codes.h"
#include "diag/ftm_types.h"
#include "diag/operation_failure.h"
#include "diag/packet_buffer.h"
#include "link/connection_access.h"
#include "platform/types.h"

/// CommandFrame is the base that every command family uses; programs cannot reach it. A command logs its
/// entry line, begins a request with BeginRequest or a Format function (both clear the buffer pair), appends
/// its fields to the returned builder, exchanges the request with a Send function, and takes its values from
/// Response(), last first. diag/command.h has each of these steps as one line.
///
/// One command at a time, on the caller's thread: all commands of the connection share the buffer pair. The
/// connection must outlive the frame.
class CommandFrame {
public:
    explicit CommandFrame(DiagConnection& connection) : m_connection(connection), m_access(connection) {}
    CommandFrame(const CommandFrame&) = delete;
    CommandFrame& operator=(const CommandFrame&) = delete;

    // --- Exchange and settings: FrameCommands documents them ----------------------------------------

    bool Send(DWORD iReadDelay_ms);
    bool SendWithDifferentResponseCmd(unsigned char iExpected, DWORD iReadDelay_ms);
    bool SendFtmCmd();
    bool SendFtmCmd75();
    /// Whenever a response arrived, the values taken from it are those that end at the request's length.
    bool SendFtmCmd59();
    bool SendEVDO();
    bool SendCDMA2000();
    void SetCommandType(FTM_Command_Type eCommandType) { m_eCommandType = eCommandType; }
    FTM_Command_Type GetCommandType() const { return m_eCommandType; }
    void SetSystemMode(FTM_Mode_Id_Enum iSystem_Mode);
    FTM_Mode_Id_Enum GetSystemMode() const { return m_eSystemMode; }

    // --- What a command works with ------------------------------------------------------------------

    DiagConnection& Connection() { return m_connection; }
    /// Access: the parts of the connection that are hidden from programs.
    const ConnectionAccess& Access() { return m_access; }
    DataLogFileHandler& Log() { return m_access.Log(); }
    PacketBuffer& Buffer() { return m_buffer; }
    ResponseReader Response() { return m_buffer.Response(); }
    /// SendForValues is Send for a command whose result is only in the response's values: false also when
    /// nothing follows the response's header.
    bool SendForValues() { return Send(0) && Response().HoldsValues(); }
    /// StoreSystemMode is SetSystemMode without the log line, for commands that imply a mode.
    void StoreSystemMode(FTM_Mode_Id_Enum eSystemMode) { m_eSystemMode = eSystemMode; }

    /// ForgetFailure begins an operation that reports why it fails; NoteFailure keeps the reason, unless
    /// there is one already.
    void ForgetFailure() { m_lastFailure = {}; }
    void NoteFailure(const OperationFailure& failure);
    const OperationFailure& LastFailure() const { return m_lastFailure; }

    // The response begins with the same header as the request, which is what the Format functions write.

    /// BeginRequest clears the buffer pair and returns the builder of an empty request.
    RequestBuilder& BeginRequest();
    /// Command type 75: 75, FTM subsystem, system mode (16 bits). Otherwise: type, 0x0077, length 0.
    RequestBuilder& FormatFTMHeader();
    /// FormatFTMHeader and three 16-bit values.
    RequestBuilder& FormatExtendedFTMHeader(unsigned short iFirst, unsigned short iSecond,
                                            unsigned short iThird);
    /// Type, FTM subsystem and four 16-bit values, of which the first is the mode.
    RequestBuilder& FormatExtendedFTMHeader(unsigned short iMode, unsigned short iFirst,
                                            unsigned short iSecond, unsigned short iThird);
    /// Type, subsystem, command (16 bits).
    RequestBuilder& FormatSubsystemDiagHeader(unsigned char iSubsystem, unsigned short iCommand);

    RequestBuilder& FormatBT_FTMHeader(unsigned short iCommandId, unsigned short iLength);
    /// The length field depends on the command id. With command type 59: appends type, command id and 0 to
    /// what the request already holds.
    RequestBuilder& FormatCDMA2000_FTMHeader(unsigned short iCommandId);
    /// The length field depends on the command id. With command type 59: appends nothing.
    RequestBuilder& FormatEVDO_FTMHeader(unsigned short iCommandId);
    RequestBuilder& FormatAGPS_FTMHeader(unsigned short iCommandId);
    RequestBuilder& FormatPMIC_FTMHeader(unsigned short iCommandId, unsigned char iSubcommandId);
    // Lengths are in bytes, as the phone's software expects them; some leave out fields. A response length is
    // that of the whole packet, and so is a camera request's. An audio request's counts the fields alone.
    RequestBuilder& FormatAudioFTMHeader(unsigned short iCommandId, unsigned short iRequestLength,
                                         unsigned short iResponseLength);
    RequestBuilder& FormatCameraFTMHeader(unsigned short iCommandId, unsigned short iRequestLength,
                                          unsigned short iResponseLength);
    RequestBuilder& FormatRF_CommonHeader(unsigned short iCommandId, unsigned short iRequestLength,
                                          unsigned short iResponseLength);
    RequestBuilder& FormatMF_DiagHeader(unsigned char iCommandId);
    /// iFirst is 1 in all known commands. pData: 16 bytes, sent when bHasData is not 0; otherwise, and for
    /// null, 16 zero bytes are sent.
    RequestBuilder& FormatGSDI_DiagHeader(DWORD iFirst, DWORD iCommandId, unsigned char iSecond,
                                          unsigned char bHasData, const unsigned char* pData);

private:
    bool Exchange(unsigned char iExpected, DWORD iReadDelay_ms);
    bool SendExpectingCommandType();
    bool ResponseByteIs(size_t iOffset, unsigned iValue);

    DiagConnection& m_connection;
    const ConnectionAccess m_access;
    PacketBuffer m_buffer;
    OperationFailure m_lastFailure;
    unsigned char m_iFtmSubsystem = DIAG_SUBSYSTEM_FTM;
    FTM_Mode_Id_Enum m_eSystemMode = FTM_MODE_ID_CDMA_1X;
    FTM_Command_Type m_eCommandType = FTM_COMMAND_75;
};
