// The phone's file system through a port server.
#pragma once

#include "link/directory_callback.h"
#include "platform/export.h"
#include "portserver/task_client.h"

/// EFS is the file-system client of a port server. Every operation returns true when the server did it;
/// otherwise GetErrorInfo says why. Paths of the phone and of this machine reach the server as they are.
/// One thread at a time. Each operation blocks until the server has ended it, or has reported nothing for
/// QMSL_TimeOut_MultipleResponse (see TaskClient). That is 10 minutes here at first, because servers carry
/// file operations out without reporting progress, and over a slow line a large file takes that long.
class QUILLET_API EFS : public Dispatched<EFS, TaskClient> {
public:
    /// Throws when there is no automation thread to be had.
    QUILLET_API_INLINE explicit EFS(const char* sClientName) : EFS(sClientName, ComThreadManager::Use()) {}
    ~EFS() override;

    /// connect starts the server and selects a COM port (65535: none in particular), within
    /// QMSL_TimeOut_ServerConnect. May be repeated.
    bool connect(unsigned short iComPort);
    /// ConfigureCallBacks registers the receiver of listed entries; null: none.
    void ConfigureCallBacks(EfsDirectoryCallBack pfnDirectory, void* pUserData);

    /// EfsDirectory lists a folder through the callback, on this thread. When it fails, the callback is not
    /// called at all, so a listing that arrives is whole.
    bool EfsDirectory(const char* sFolderPath);
    /// EfsRead copies a phone file to a local one, EfsWrite the other way: source first.
    bool EfsRead(const char* sEFS_File, const char* sLocalFile);
    bool EfsWrite(const char* sLocalFile, const char* sEFS_File);
    bool EfsDelete(const char* sFilePath);
    bool EfsMkDir(const char* sFolderPath);
    bool EfsRmDir(const char* sFolderPath);
    /// EfsRmTree removes a folder with all that is in it.
    bool EfsRmTree(const char* sFolderPath);
    /// CreateCEFS makes an image of the phone's file system in a local file.
    bool CreateCEFS(const char* sLocalFile);
    /// DownloadPRL reads the phone's roaming list into a local file, UploadPRL writes it from one.
    bool DownloadPRL(const char* sLocalFile);
    bool UploadPRL(const char* sLocalFile);

    /// These are not provided: false.
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
