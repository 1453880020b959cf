// Software images and NV backups of the phone through a port server.
#pragma once

#include <vector>

#include "platform/export.h"
#include "portserver/task_client.h"

class DataLogFileHandler;

/// Told about the progress of a software download over a port server; the result is not looked at.
using SoftwareDownloadCallBack = bool (*)(void* pUserData);

/// An observer of a running download, on the thread of the operation. It may call abort, but must not add or
/// remove listeners.
class QUILLET_API SoftwareDownloadListener {
public:
    virtual ~SoftwareDownloadListener();
    /// The server has done iDone of iInAll, in units of its own.
    virtual void downloadProgressed(DWORD iDone, DWORD iInAll) = 0;
};

/// SoftwareDownload is the client of a port server that loads images and NV backups. Every operation returns
/// true when the server did it; otherwise GetErrorInfo says why. Names of local files reach the server as
/// they are. One thread at a time, save abort. Each operation blocks until the server has ended it, or has
/// reported nothing for QMSL_TimeOut_MultipleResponse (10 s at first; see TaskClient): set it higher for a
/// server that reports progress rarely or late, because a download that is aborted may leave a phone that
/// does not start.
class QUILLET_API SoftwareDownload : public Dispatched<SoftwareDownload, TaskClient> {
public:
    /// hContext is only kept for the callback of whoever registers one. Throws when there is no automation
    /// thread to be had.
    QUILLET_API_INLINE SoftwareDownload(void* hContext, const char* sClientName)
        : SoftwareDownload(hContext, sClientName, ComThreadManager::Use()) {}
    ~SoftwareDownload() override;

    /// connect starts the server and selects a COM port (65535: none in particular), within
    /// QMSL_TimeOut_ServerConnect. May be repeated.
    bool connect(unsigned short iComPort);
    /// The same for a port by its name; null or empty: none in particular.
    bool connect(const char* sPortName);

    /// ConfigureCallBacks registers the receiver of progress (null: none), called on the thread of the
    /// operation. Its user data is pUserData, or the context handle when that is null.
    void ConfigureCallBacks(SoftwareDownloadCallBack pfnProgress, void* pUserData);
    void addListener(SoftwareDownloadListener* pListener);
    void removeListener(SoftwareDownloadListener* pListener);
    /// SetLogManager gives the text log that operations and errors go to; null: none. It must live until it
    /// is replaced.
    void SetLogManager(DataLogFileHandler* pLog) { m_pLog = pLog; }

    /// getPhoneMode writes the mode that the phone is in, as the server numbers it.
    bool getPhoneMode(DWORD& iMode);

    bool uploadHexFile(const char* sFile);
    bool uploadBHexFile(const char* sFile);
    bool UploadBootLoaderBeforeImageHexFile(const char* sBootLoaderFile, const char* sImageFile);
    bool uploadBootfile(const char* sFile);
    bool uploadCEFS_File(const char* sFile);
    bool uploadCEFS_File2(const char* sFile, const char* sSecondFile);
    bool uploadMultiImage(const char* sFolder);
    /// uploadQcnFile restores an NV backup, with the service code that unlocks the phone where one is needed.
    bool uploadQcnFile(const char* sFile);
    bool uploadQcnFile(const char* sFile, const char* sSpc);
    /// downloadQcnFile makes an NV backup.
    bool downloadQcnFile(const char* sFile, const char* sSpc);

    /// abort ends the running operation, which then fails. Any thread. False when the server cannot be told
    /// within 10 s: a server that carries an operation out in one piece cannot be interrupted.
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
