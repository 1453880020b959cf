// Making and removing names on the phone, with the phone's verdict.
#pragma once

#include "platform/export.h"
#include "platform/types.h"

class CommandFrame;

/// Efs2Names sends the requests of Efs2Metadata's MKDIR, RMDIR, UNLINK, CREATE_LINK and READ_LINK, and
/// reports whether the phone granted them. One request each, within QMSL_TimeOut_SyncRequest. Caller's
/// thread. The frame must outlive it.
///
/// True means that the phone answered; whether it granted the request is in iErrorNo (0: yes; otherwise
/// the phone's error number). Without an response that carries one the result is false and no out-value
/// changes; the request may have been carried out. Paths that do not fit in a request (together more than
/// about 4090 characters) are not sent: false.
class QUILLET_API Efs2Names {
public:
    explicit Efs2Names(CommandFrame& frame) : m_frame(frame) {}

    /// EFS2_DIAG_MAKE_DIRECTORY makes a directory with the permission bits of iMode.
    bool EFS2_DIAG_MAKE_DIRECTORY(const char* sFolderPath, DWORD iMode, DWORD& iErrorNo);
    /// EFS2_DIAG_REMOVE_DIRECTORY removes an empty directory.
    bool EFS2_DIAG_REMOVE_DIRECTORY(const char* sFolderPath, DWORD& iErrorNo);
    /// EFS2_DIAG_REMOVE_FILE removes a file or link.
    bool EFS2_DIAG_REMOVE_FILE(const char* sFilePath, DWORD& iErrorNo);
    /// EFS2_DIAG_MAKE_LINK makes the link sFilePath that points to sPointedFilePath.
    bool EFS2_DIAG_MAKE_LINK(const char* sFilePath, const char* sPointedFilePath, DWORD& iErrorNo);
    /// EFS2_DIAG_LINK_TARGET reads the target of a link; a phone refuses it for anything else.
    /// sPointedFilePath: Efs2Metadata::kEfs2TextSize bytes; longer targets are cut. It is written only when
    /// the phone granted the request.
    bool EFS2_DIAG_LINK_TARGET(const char* sFilePath, char* sPointedFilePath, DWORD& iErrorNo);

private:
    CommandFrame& m_frame;
};
