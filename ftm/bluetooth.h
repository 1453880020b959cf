// The Bluetooth chip: HCI commands passed through to it, and the events it responds with.
#pragma once

#include <initializer_list>

#include "platform/export.h"
#include "platform/types.h"

class CommandFrame;
class FtmLog;

#pragma pack(push, 1)
/// Bluetooth_LocalVersion_struct: the event for Read Local Version Information, in wire layout,
/// little-endian.
struct Bluetooth_LocalVersion_struct {
    DWORD iEventHead;                // packet type (4), event code (0x0E), length (12), command credit
    DWORD iOpcodeStatusHciVersion;   // opcode 0x1001 (16 bits), status, HCI version
    DWORD iHciRevisionLmpMaker;      // HCI revision (16 bits), LMP version, maker (low byte)
    unsigned short iMakerSubversion; // maker (high byte), LMP subversion (low byte)
    unsigned char iSubversionHigh;   // LMP subversion (high byte)
};
#pragma pack(pop)
static_assert(sizeof(Bluetooth_LocalVersion_struct) == 15);

/// FtmBluetooth: an HCI command is sent with its packet type (1) in front: 01, opcode (16 bits), length of
/// the parameters, parameters. Opcodes and layouts are those of the public Bluetooth Core standard. Each
/// request waits up to QMSL_TimeOut_SyncRequest. True means that the phone accepted the command; the chip's
/// own result is only in the event. Caller's thread. The frame and the FTM log must outlive it.
class QUILLET_API FtmBluetooth {
public:
    FtmBluetooth(CommandFrame& frame, FtmLog& ftmLog) : m_frame(frame), m_ftmLog(ftmLog) {}

    /// FTM_BT_HCI_USER_CMD sends an HCI command of iLength bytes. False, with nothing sent, when it does not
    /// fit in a request (about 4080 bytes).
    bool FTM_BT_HCI_USER_CMD(const unsigned char* piHCI_Command, unsigned short iLength);

    /// FTM_BT_HCI_USER_CMD_WithEventResponse sends an HCI command and waits at most iTimeOut_ms for the next
    /// event. It switches the records of Bluetooth events on before and off afterwards.
    ///   piEvent       receives the event, with its packet type (4) in front
    ///   iEventLength  in: the room in piEvent; out: the event's length, 0 when none arrived
    ///
    /// False also when the event is longer than the room; piEvent is then unchanged.
    bool FTM_BT_HCI_USER_CMD_WithEventResponse(const unsigned char* piHCI_Command, unsigned short iLength,
                                               unsigned char* piEvent, unsigned short& iEventLength,
                                               DWORD iTimeOut_ms);

    /// BT_GetModuleVersion reads the chip's version (Read Local Version Information, opcode 0x1001), waiting
    /// 1000 ms for the event. False, with the record unchanged, when no event of at least 15 bytes arrived.
    bool BT_GetModuleVersion(Bluetooth_LocalVersion_struct& localVersion);

    /// FTM_BT_Enable_Bluetooth prepares the chip for a tester: Reset (opcode 0x0C03), Write Scan Enable
    /// (0x0C1A: inquiry and page scan), Enable Device Under Test Mode (0x1803). It ends at the first command
    /// that fails.
    bool FTM_BT_Enable_Bluetooth();
    /// FTM_BT_SetCW transmits continuously on a channel. The public standard has no command for a bare
    /// carrier; the nearest is LE Transmitter Test (opcode 0x201E; 2402 MHz + 2 MHz per channel, 0 to 39)
    /// with all ones, in the longest packets that are always allowed (37 bytes).
    bool FTM_BT_SetCW(unsigned char iChannel);
    /// FTM_BT_SetAddr sets the address that the chip transmits with: six bytes, lowest first, with LE Set
    /// Random Address (opcode 0x2005). The public standard allows no other address to be set.
    bool FTM_BT_SetAddr(const unsigned char* piAddress);

private:
    bool SendHci(unsigned short iOpcode, std::initializer_list<unsigned char> parameters);

    CommandFrame& m_frame;
    FtmLog& m_ftmLog;
};
