// The phone's file system through a port server.
#pragma once

#include "link/directory_callback.h"
#include "platform/export.h"
#include "portserver/task_client.h"

/// EFS is the file-system client of a port server. Operations return true when the server succeeded;
/// otherwise GetErrorInfo returns the reason. Paths of the phone and of this computer are passed to the
/// server unchanged. One thread at a time. An operation blocks until the server has finished it, or has
/// reported nothing for QMSL_TimeOut_MultipleResponse (see TaskClient). The default here is 10 minutes,
/// because servers transfer files without reporting progress, which can take that long for a large file over
/// a slow line.
class QUILLET_API EFS : public Dispatched<EFS, TaskClient> {
public:
    /// Throws when no automation thread can be created.
    QUILLET_API_INLINE explicit EFS(const char* sClientName) : EFS(sClientName, ComThreadManager::Use()) {}
    ~EFS() override;

    /// connect starts the server and selects a COM port (65535: no particular port), within
    /// QMSL_TimeOut_ServerConnect. May be called again.
    bool connect(unsigned short iComPort);
    /// ConfigureCallBacks registers the callback for listed entries; null: none.
    void ConfigureCallBacks(EfsDirectoryCallBack pfnDirectory, void* pUserData);

    /// EfsDirectory lists a folder through the callback, on the calling thread. The callback is called only
    /// when the whole listing succeeded.
    bool EfsDirectory(const char* sFolderPath);
    /// EfsRead copies a file of the phone to a local one, EfsWrite the other way; the source comes first.
    bool EfsRead(const char* sEFS_File, const char* sLocalFile);
    bool EfsWrite(const char* sLocalFile, const char* sEFS_File);
    /// EfsDelete removes a file.
    bool EfsDelete(const char* sFilePath);
    /// EfsMkDir makes a folder, EfsRmDir removes an empty one.
    bool EfsMkDir(const char* sFolderPath);
    bool EfsRmDir(const char* sFolderPath);
    /// EfsRmTree removes a folder and its contents.
    bool EfsRmTree(const char* sFolderPath);
    /// CreateCEFS stores an image of the phone's file system in a local file.
    bool CreateCEFS(const char* sLocalFile);
    /// DownloadPRL saves the phone's roaming list to a local file, UploadPRL writes it from one.
    bool DownloadPRL(const char* sLocalFile);
    bool UploadPRL(const char* sLocalFile);

    /// EfsSetPermissions, EfsBackupDir, EfsRestoreDir, EfsVerify are not supported: always false.
    bool EfsSetPermissions(const char* sFilePath, unsigned short iMask);
    bool EfsBackupDir(const char* sFolderPath, const char* sLocalFolder);
    bool EfsRestoreDir(const char* sLocalFolder, const char* sFolderPath);
    bool EfsVerify(const char* sLocalFile, const char* sEFS_File);

private:
    friend class FunctionDispatcherHelper<EFS>;

    EFS(const char* sClientName, std::shared_ptr<ComThreadManager> pComThread);
    EFS(const EFS& other) : Dispatched(other) {}
    void OnEntry(const EfsDirItem& item) override;
    bool NotImplemented(const char* sName);

    EfsDirectoryCallBack m_pfnDirectory = nullptr;
    void* m_pUserData = nullptr;
};

extern template class FunctionDispatcherHelper<EFS>;
