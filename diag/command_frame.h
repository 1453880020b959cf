// The frame of every diagnostic command: the buffer pair, the exchange, and the factory-test headers.
#pragma once

#include "diag/ftm_types.h"
#include "diag/operation_failure.h"
#include "diag/packet_buffer.h"
#include "link/connection_access.h"
#include "platform/types.h"

/// CommandFrame is what every command family is built on; programs cannot reach it. A command logs its entry
/// line, begins a request with BeginRequest or one of the Format functions (which clear the buffer pair),
/// appends its fields to the builder that they return, exchanges the request with one of the Send functions,
/// and takes its values from Response(), last first. diag/command.h has these steps as one line each.
///
/// One command at a time, on the caller's thread: the buffer pair is shared by all commands of the
/// connection. The connection must outlive the frame.
class CommandFrame {
public:
    explicit CommandFrame(DiagConnection& connection) : m_connection(connection), m_access(connection) {}
    CommandFrame(const CommandFrame&) = delete;
    CommandFrame& operator=(const CommandFrame&) = delete;

    // --- Exchange -----------------------------------------------------------------------------------
    // All of them wait for QMSL_TimeOut_SyncRequest and leave the response in the buffer pair.

    /// Send exchanges the request as built; iReadDelay_ms is slept between writing and waiting. True when
    /// a response with the request's first byte arrived.
    bool Send(DWORD iReadDelay_ms);
    /// The same for a request that is answered with another first byte, iExpected.
    bool SendWithDifferentResponseCmd(unsigned char iExpected, DWORD iReadDelay_ms);

    /// SendFtmCmd is SendFtmCmd59 or SendFtmCmd75, by the command type.
    bool SendFtmCmd();
    /// True when the response begins with the command type, the FTM subsystem and the system mode.
    bool SendFtmCmd75();
    /// Fills in the length field (offset 3) first. True when the response begins with the request's first
    /// three bytes. After any response, takes read the fields that end at the request's length.
    bool SendFtmCmd59();
    /// True when the response carries mode 8 (third byte) and status 0 (seventh byte).
    bool SendEVDO();
    /// With command type 59 SendFtmCmd59; otherwise true when the response begins with the command type.
    bool SendCDMA2000();

    // --- Settings -----------------------------------------------------------------------------------

    /// SetCommandType chooses the form of FTM requests (75 at first).
    void SetCommandType(FTM_Command_Type eCommandType) { m_eCommandType = eCommandType; }
    FTM_Command_Type GetCommandType() const { return m_eCommandType; }
    /// SetSystemMode sets the mode field of FTM requests (1 at first).
    void SetSystemMode(FTM_Mode_Id_Enum iSystem_Mode);
    FTM_Mode_Id_Enum GetSystemMode() const { return m_eSystemMode; }

    // --- What a command works with ------------------------------------------------------------------

    DiagConnection& Connection() { return m_connection; }
    /// Access: the parts of the connection that programs do not see.
    const ConnectionAccess& Access() { return m_access; }
    DataLogFileHandler& Log() { return m_access.Log(); }
    PacketBuffer& Buffer() { return m_buffer; }
    ResponseReader Response() { return m_buffer.Response(); }
    /// AskForValues is Send for a command whose only news is in the values of the answer: false also when the
    /// answer ends within its header.
    bool AskForValues() { return Send(0) && Response().HoldsValues(); }
    /// StoreSystemMode is SetSystemMode without its log line, for commands from which the mode follows.
    void StoreSystemMode(FTM_Mode_Id_Enum eSystemMode) { m_eSystemMode = eSystemMode; }

    /// ForgetFailure begins an operation that says why it fails; NoteFailure keeps the reason, unless there
    /// is one already.
    void ForgetFailure() { m_lastFailure = {}; }
    void NoteFailure(const OperationFailure& failure);
    const OperationFailure& LastFailure() const { return m_lastFailure; }

    // What the Format functions write is the header of the answer too.

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
    /// The length field follows from the command id. With command type 59: appends type, command id and
    /// 0 to what the request already holds.
    RequestBuilder& FormatCDMA2000_FTMHeader(unsigned short iCommandId);
    /// The length field follows from the command id. With command type 59: nothing.
    RequestBuilder& FormatEVDO_FTMHeader(unsigned short iCommandId);
    RequestBuilder& FormatAGPS_FTMHeader(unsigned short iCommandId);
    RequestBuilder& FormatPMIC_FTMHeader(unsigned short iCommandId, unsigned char iSubcommandId);
    RequestBuilder& FormatAudioFTMHeader(unsigned short iA, unsigned short iB, unsigned short iC);
    RequestBuilder& FormatCameraFTMHeader(unsigned short iA, unsigned short iB, unsigned short iC);
    RequestBuilder& FormatRF_CommonHeader(unsigned short iA, unsigned short iB, unsigned short iC);
    RequestBuilder& FormatMF_DiagHeader(unsigned char iCommandId);
    /// pData: 16 bytes that are sent when iD is not 0; null or iD 0 sends 16 zero bytes.
    RequestBuilder& FormatGSDI_DiagHeader(DWORD iA, DWORD iB, unsigned char iC, unsigned char iD,
                                          const unsigned char* pData);

private:
    bool Exchange(unsigned char iExpected, DWORD iReadDelay_ms);
    bool SendExpectingCommandType();
    bool ResponseByteIs(size_t iOffset, unsigned iValue);

    DiagConnection& m_connection;
    const ConnectionAccess m_access;
    PacketBuffer m_buffer;
    OperationFailure m_lastFailure;
    unsigned char m_iFtmSubsystem = 11;
    FTM_Mode_Id_Enum m_eSystemMode = FTM_MODE_ID_CDMA_1X;
    FTM_Command_Type m_eCommandType = FTM_COMMAND_75;
};
