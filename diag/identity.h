// What identifies the phone and its software.
#pragma once

#include <cstddef>

#include "platform/export.h"
#include "platform/types.h"

class CommandFrame;
class NvItems;

#pragma pack(push, 1)
/// The phone's version response, in wire layout; 16-bit fields are little-endian. Texts have fixed widths,
/// are padded with blanks and are not zero-terminated.
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

/// PhoneIdentity: each operation is one request and its response, within QMSL_TimeOut_SyncRequest. Caller's
/// thread. The frame and the NV items must outlive it.
class QUILLET_API PhoneIdentity {
public:
    /// The size of each text buffer of the caller, the terminating zero included.
    static constexpr size_t kBuildTextSize = 512;

    PhoneIdentity(CommandFrame& frame, NvItems& nvItems) : m_frame(frame), m_nvItems(nvItems) {}

    /// DIAG_VERNO_F reads the version response into *pVersion and ignores any bytes beyond the record. False,
    /// with the record unchanged, without a response, for one below 54 bytes, and for null (the request is
    /// still sent).
    bool DIAG_VERNO_F(QLIB_PhoneResp_Version* pVersion);

    /// DIAG_EXT_BUILD_ID_F reads the modem chip's version, the model number, and the names of the software
    /// and the model (kBuildTextSize bytes each; longer names are cut, missing ones are empty). True when the
    /// phone answered; numbers missing from the response stay unchanged. False, with everything unchanged,
    /// for a response that ends within its header.
    bool DIAG_EXT_BUILD_ID_F(DWORD& iMSM_HW_Version, DWORD& iMobModel, char* sMobSwRev, char* sModelStr);

    /// DIAG_READ_ESN_F reads the electronic serial number (NV item 0). False, with iESN unchanged, without a
    /// response, when it is too short for the number, and when the phone refuses to read the item.
    bool DIAG_READ_ESN_F(DWORD& iESN);

private:
    CommandFrame& m_frame;
    NvItems& m_nvItems;
};
