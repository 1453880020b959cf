// The frame's own operations: its settings, and the exchange of the request in the buffer pair.
#pragma once

#include "diag/ftm_types.h"
#include "platform/export.h"
#include "platform/types.h"

class CommandFrame;

/// FrameCommands sets the form of FTM requests, and exchanges once more the request that the last command
/// left in the connection's buffer pair. Each exchange waits up to QMSL_TimeOut_SyncRequest and leaves the
/// response in the buffer pair. Caller's thread. The frame must outlive it.
class QUILLET_API FrameCommands {
public:
    explicit FrameCommands(CommandFrame& frame) : m_frame(frame) {}

    // --- Exchange -----------------------------------------------------------------------------------

    /// Send exchanges the request unchanged, and sleeps for iReadDelay_ms between writing and waiting. True
    /// when a response with the request's first byte arrived.
    bool Send(DWORD iReadDelay_ms);
    /// SendWithDifferentResponseCmd is Send for a request whose response begins with another byte, iExpected.
    bool SendWithDifferentResponseCmd(unsigned char iExpected, DWORD iReadDelay_ms);
    /// SendFtmCmd is SendFtmCmd59 or SendFtmCmd75, depending on the command type.
    bool SendFtmCmd();
    /// SendFtmCmd75: true when the response begins with the command type, the FTM subsystem and the system
    /// mode.
    bool SendFtmCmd75();
    /// SendFtmCmd59 fills in the length field (offset 3) first. True when the response begins with the
    /// request's first three bytes.
    bool SendFtmCmd59();
    /// SendEVDO: true when the response has mode 8 (third byte) and status 0 (seventh byte).
    bool SendEVDO();
    /// SendCDMA2000 is SendFtmCmd59 with command type 59; otherwise it is true when the response begins with
    /// the command type.
    bool SendCDMA2000();

    // --- Settings -----------------------------------------------------------------------------------

    /// SetCommandType sets the form of FTM requests (initially 75), GetCommandType returns it.
    void SetCommandType(FTM_Command_Type eCommandType);
    FTM_Command_Type GetCommandType() const;
    /// SetSystemMode sets the mode field of FTM requests (initially 1), GetSystemMode returns it.
    void SetSystemMode(FTM_Mode_Id_Enum iSystem_Mode);
    FTM_Mode_Id_Enum GetSystemMode() const;

private:
    CommandFrame& m_frame;
};
