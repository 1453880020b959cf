// The two file-attribute requests of the phone's older file-system command.
#pragma once

#include "platform/export.h"
#include "platform/types.h"

class CommandFrame;
class RequestBuilder;

/// FileAttributes asks and sets the attributes of phone files. What the values mean is the phone's own
/// affair; they are passed through. Caller's thread; each method blocks for up to QMSL_TimeOut_SyncRequest.
/// False means that no answer came. A path of 255 characters or more is refused: its length is sent in one
/// byte.
class QUILLET_API FileAttributes {
public:
    explicit FileAttributes(CommandFrame& frame) : m_frame(frame) {}

    /// DIAG_GET_FILE_ATTRIBUTES hands out the three values at the end of the answer. An answer that has no
    /// room for them leaves them as they were, and true is returned nevertheless.
    bool DIAG_GET_FILE_ATTRIBUTES(const char* sPath, DWORD* piFirst, DWORD* piSecond, DWORD* piThird);

    /// DIAG_SET_FILE_ATTRIBUTES sends two values; whether the phone took them is not looked at.
    bool DIAG_SET_FILE_ATTRIBUTES(const char* sPath, DWORD iFirst, DWORD iSecond);

private:
    RequestBuilder* BeginAttributes(unsigned char iOperation, const char* sPath);

    CommandFrame& m_frame;
};
