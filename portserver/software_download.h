// Software images and NV backups of the phone through a port server.
#pragma once

#include <vector>

#include "platform/export.h"
#include "portserver/task_client.h"

class DataLogFileHandler;

/// Called with the progress of a software download over a port server; the result is ignored.
using SoftwareDownloadCallBack = bool (*)(void* pUserData);

/// An observer of a running download, called on the thread of the operation. It may call abort, but must not
/// add or remove listeners.
class QUILLET_API SoftwareDownloadListener {
public:
    virtual ~SoftwareDownloadListener();
    /// The server has completed iDone of iInAll, in its own units.
    virtual void downloadProgressed(DWORD iDone, DWORD iInAll) = 0;
};

/// SoftwareDownload is the client of a port server that loads images and NV backups. Operations return true
/// when the server succeeded; otherwise GetErrorInfo returns the reason. Local file names are passed to the
/// server unchanged. One thread at a time, except for abort. An operation blocks until the server has
/// finished it, or has reported nothing for QMSL_TimeOut_MultipleResponse (default 10 s; see TaskClient).
/// Raise it for a server that reports progress rarely or late: an aborted download may leave a phone that
/// does not start.
class QUILLET_API SoftwareDownload : public Dispatched<SoftwareDownload, TaskClient> {
public:
    /// hContext is only stored for the callback. Throws when no automation thread can be created.
    QUILLET_API_INLINE SoftwareDownload(void* hContext, const char* sClientName)
        : SoftwareDownload(hContext, sClientName, ComThreadManager::Use()) {}
    ~SoftwareDownload() override;

    /// connect starts the server and selects a COM port (65535: no particular port), within
    /// QMSL_TimeOut_ServerConnect. May be called again.
    bool connect(unsigned short iComPort);
    /// Selects a port by name; null or empty: no particular port.
    bool connect(const char* sPortName);

    /// ConfigureCallBacks registers the progress callback (null: none), called on the thread of the
    /// operation. It receives pUserData, or the context handle when that is null.
    void ConfigureCallBacks(SoftwareDownloadCallBack pfnProgress, void* pUserData);
    /// addListener adds an observer, which must live until removeListener.
    void addListener(SoftwareDownloadListener* pListener);
    void removeListener(SoftwareDownloadListener* pListener);
    /// SetLogManager sets the text log of operations and errors; null: none. The log must live until it is
    /// replaced.
    void SetLogManager(DataLogFileHandler* pLog) { m_pLog = pLog; }

    /// getPhoneMode stores the mode of the phone, as the server numbers it.
    bool getPhoneMode(DWORD& iMode);

    /// uploadHexFile, uploadBHexFile, UploadBootLoaderBeforeImageHexFile, uploadBootfile, uploadCEFS_File,
    /// uploadCEFS_File2, uploadMultiImage load an image (or several, in a folder) of that format.
    bool uploadHexFile(const char* sFile);
    bool uploadBHexFile(const char* sFile);
    bool UploadBootLoaderBeforeImageHexFile(const char* sBootLoaderFile, const char* sImageFile);
    bool uploadBootfile(const char* sFile);
    bool uploadCEFS_File(const char* sFile);
    bool uploadCEFS_File2(const char* sFile, const char* sSecondFile);
    bool uploadMultiImage(const char* sFolder);
    /// uploadQcnFile restores an NV backup; the service code unlocks the phone if necessary.
    bool uploadQcnFile(const char* sFile);
    bool uploadQcnFile(const char* sFile, const char* sSpc);
    /// downloadQcnFile saves an NV backup.
    bool downloadQcnFile(const char* sFile, const char* sSpc);

    /// abort ends the running operation, which then fails. Any thread. False when it cannot reach the server
    /// within 10 s: a server that runs an operation in a single call cannot be interrupted.
    bool abort() { return Abort(); }

private:
    friend class FunctionDispatcherHelper<SoftwareDownload>;

    SoftwareDownload(void* hContext, const char* sClientName, std::shared_ptr<ComThreadManager> pComThread);
    SoftwareDownload(const SoftwareDownload& other) : Dispatched(other), m_hContext(nullptr) {}
    void Error(const std::string& sText) override;
    void OnBegin(const char* sName) override;
    void OnProgress(DWORD iDone, DWORD iInAll) override;
    void getPhoneModeImpl(void* pCall);

    void* const m_hContext;
    DataLogFileHandler* m_pLog = nullptr;
    std::vector<SoftwareDownloadListener*> m_listeners;
    SoftwareDownloadCallBack m_pfnProgress = nullptr;
    void* m_pUserData = nullptr;
};

extern template class FunctionDispatcherHelper<SoftwareDownload>;
