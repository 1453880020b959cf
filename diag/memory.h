// Reading and writing the phone's memory, a few bytes at a time.
#pragma once

#include "platform/export.h"
#include "platform/types.h"

class CommandFrame;

/// PhoneMemory: each operation is one request and its response, within QMSL_TimeOut_SyncRequest; true means
/// that the phone answered. Addresses are the phone's; counts are values of the operation's width. A request
/// moves at most 4 bytes (8 and 16 bits) or 8 bytes (32 bits): larger counts are silently cut to 4 values of
/// 8 bits, 2 of 16 or 2 of 32. Caller's thread. The frame must outlive it.
class QUILLET_API PhoneMemory {
public:
    explicit PhoneMemory(CommandFrame& frame) : m_frame(frame) {}

    /// DIAG_MEMORY_PEEK_F reads into pOut. Values missing from the response stay unchanged.
    bool DIAG_MEMORY_PEEK_F(DWORD iAddress, unsigned short iNumItems, unsigned char* pOut);
    bool DIAG_MEMORY_PEEK_F(DWORD iAddress, unsigned short iNumItems, unsigned short* pOut);
    bool DIAG_MEMORY_PEEK_F(DWORD iAddress, unsigned short iNumItems, DWORD* pOut);

    /// DIAG_MEMORY_POKE_F writes. The phone does not report whether the write succeeded.
    bool DIAG_MEMORY_POKE_F(DWORD iAddress, unsigned short iNumItems, const unsigned char* pData);
    bool DIAG_MEMORY_POKE_F(DWORD iAddress, unsigned short iNumItems, const unsigned short* pData);
    bool DIAG_MEMORY_POKE_F(DWORD iAddress, unsigned short iNumItems, const DWORD* pData);

private:
    CommandFrame& m_frame;
};
