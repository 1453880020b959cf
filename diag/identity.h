// Who the phone is: version, build, serial number.
#pragma once

#include <cstddef>

#include "platform/export.h"
#include "platform/types.h"

class CommandFrame;
class NvItems;

#pragma pack(push, 1)
/// The phone's version answer as it stands on the wire, 16-bit fields little-endian. Texts have fixed widths,
/// are filled up with blanks and end without a zero.
struct QLIB_PhoneResp_Version {
    unsigned char iCmdCode; // 0x00
    char sCompileDate[11];  // "Mar 14 2008"
    char sCompileTime[8];
    char sReleaseDate[11];
    char sReleaseTime[8];
    char sVersionDirectory[8];
    unsigned char iStationClass;
    unsigned char iCaiRevision; // of the air interface
    unsigned char iModel;
    unsigned short iFirmwareRevision;
    unsigned char iSlotCycle;
    unsigned char iHardwareVersion; // of the modem chip
};
#pragma pack(pop)
static_assert(sizeof(QLIB_PhoneResp_Version) == 54);

/// PhoneIdentity: each operation is one request and its answer, within QMSL_TimeOut_SyncRequest. Caller's
/// thread. The frame and the NV items must outlive it.
class QUILLET_API PhoneIdentity {
public:
    /// Texts that are handed out take up to this many bytes of the caller's buffer, the zero included.
    static constexpr size_t kBuildTextSize = 512;

    PhoneIdentity(CommandFrame& frame, NvItems& nvItems) : m_frame(frame), m_nvItems(nvItems) {}

    /// DIAG_VERNO_F reads the version answer into *pVersion; what a phone says beyond the record is left out.
    /// False, with the record as it was, without an answer, for an answer below 54 bytes, and for null (the
    /// phone is asked all the same).
    bool DIAG_VERNO_F(QLIB_PhoneResp_Version* pVersion);

    /// DIAG_EXT_BUILD_ID_F reads the modem chip's version, the model number, and the names of the software
    /// and the model (kBuildTextSize bytes each; longer ones are cut, missing ones are empty). True when the
    /// phone answered; numbers that the answer lacks stay as they were. False, with everything as it was, for
    /// an answer that ends within its header.
    bool DIAG_EXT_BUILD_ID_F(DWORD& iMSM_HW_Version, DWORD& iMobModel, char* sMobSwRev, char* sModelStr);

    /// DIAG_READ_ESN_F reads the electronic serial number (NV item 0). False, with iESN as it was, without an
    /// answer, for one that ends before the number, and when the phone refuses the item.
    bool DIAG_READ_ESN_F(DWORD& iESN);

private:
    CommandFrame& m_frame;
    NvItems& m_nvItems;
};
