// The two file-attribute requests of the phone's older file-system command.
#pragma once

#include "platform/export.h"
#include "platform/types.h"

class CommandFrame;
class RequestBuilder;

/// FileAttributes reads and sets the attributes of phone files. The meaning of the values is up to the phone;
/// they are passed through. Caller's thread; each method blocks for up to QMSL_TimeOut_SyncRequest. False
/// means that no response arrived. A path of 255 characters or more is refused: its length is sent in one
/// byte.
class QUILLET_API FileAttributes {
public:
    explicit FileAttributes(CommandFrame& frame) : m_frame(frame) {}

    /// DIAG_GET_FILE_ATTRIBUTES reads three values from the response's end. When the response is too short
    /// for them they stay unchanged, and the result is still true.
    bool DIAG_GET_FILE_ATTRIBUTES(const char* sPath, DWORD* piFirst, DWORD* piSecond, DWORD* piThird);

    /// DIAG_SET_FILE_ATTRIBUTES sends two values. It does not check whether the phone accepted them.
    bool DIAG_SET_FILE_ATTRIBUTES(const char* sPath, DWORD iFirst, DWORD iSecond);

private:
    RequestBuilder* BeginAttributes(unsigned char iOperation, const char* sPath);

    CommandFrame& m_frame;
};
