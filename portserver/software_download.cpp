#include "portserver/software_download.h"

#include <algorithm>
#include <utility>

#include "link/text_log.h"

namespace {

struct ModeCall {
    bool bDone = false;
    DWORD iMode = 0;
};

} // namespace

SoftwareDownloadListener::~SoftwareDownloadListener() = default;

SoftwareDownload::SoftwareDownload(void* hContext, const char* sClientName,
                                   std::shared_ptr<ComThreadManager> pComThread)
    : Dispatched("SoftwareDownload", sClientName, std::move(pComThread)), m_hContext(hContext) {}
SoftwareDownload::~SoftwareDownload() = default;

bool SoftwareDownload::connect(unsigned short iComPort) {
    return Connect(PortName(iComPort));
}

bool SoftwareDownload::connect(const char* sPortName) {
    return Connect(sPortName != nullptr ? sPortName : "");
}

void SoftwareDownload::ConfigureCallBacks(SoftwareDownloadCallBack pfnProgress, void* pUserData) {
    m_pfnProgress = pfnProgress;
    m_pUserData = pUserData != nullptr ? pUserData : m_hContext;
}

void SoftwareDownload::addListener(SoftwareDownloadListener* pListener) {
    if (pListener != nullptr)
        m_listeners.push_back(pListener);
}

void SoftwareDownload::removeListener(SoftwareDownloadListener* pListener) {
    std::erase(m_listeners, pListener);
}

void SoftwareDownload::Error(const std::string& sText) {
    TaskClient::Error(sText);
    if (m_pLog != nullptr && HasError())
        m_pLog->LogMessage(LOG_ERR, "%s", sText.c_str());
}

void SoftwareDownload::OnBegin(const char* sName) {
    if (m_pLog != nullptr)
        m_pLog->LogMessage(LOG_FN, "%s", Operation(sName).c_str());
}

void SoftwareDownload::OnProgress(DWORD iDone, DWORD iInAll) {
    for (SoftwareDownloadListener* const pListener : m_listeners)
        pListener->downloadProgressed(iDone, iInAll);
    if (m_pfnProgress != nullptr)
        m_pfnProgress(m_pUserData);
}

bool SoftwareDownload::getPhoneMode(DWORD& iMode) {
    return Attempt("getPhoneMode", [&] {
        OnBegin("getPhoneMode");
        RequireServer("getPhoneMode");
        const auto pCall = std::make_shared<ModeCall>();
        Execute("getPhoneMode", &SoftwareDownload::getPhoneModeImpl, pCall, kCallLimit_ms);
        if (!pCall->bDone)
            throw ServerException(Operation("getPhoneMode") + " - failed");
        iMode = pCall->iMode;
    });
}

void SoftwareDownload::getPhoneModeImpl(void* pArgument) {
    ModeCall& call = *static_cast<ModeCall*>(pArgument);
    call.bDone = Server().control(PhoneControl::GetPhoneMode, "", call.iMode);
}

bool SoftwareDownload::uploadHexFile(const char* sFile) {
    return RunTask(ServerTask::UploadHexFile, "uploadHexFile", {sFile});
}

bool SoftwareDownload::uploadBHexFile(const char* sFile) {
    return RunTask(ServerTask::UploadBHexFile, "uploadBHexFile", {sFile});
}

bool SoftwareDownload::UploadBootLoaderBeforeImageHexFile(const char* sBootLoaderFile,
                                                          const char* sImageFile) {
    return RunTask(ServerTask::UploadBootLoaderBeforeImageHexFile, "UploadBootLoaderBeforeImageHexFile",
                   {sBootLoaderFile, sImageFile});
}

bool SoftwareDownload::uploadBootfile(const char* sFile) {
    return RunTask(ServerTask::UploadBootfile, "uploadBootfile", {sFile});
}

bool SoftwareDownload::uploadCEFS_File(const char* sFile) {
    return RunTask(ServerTask::UploadCEFS_File, "uploadCEFS_File", {sFile});
}

bool SoftwareDownload::uploadCEFS_File2(const char* sFile, const char* sSecondFile) {
    return RunTask(ServerTask::UploadCEFS_File2, "uploadCEFS_File2", {sFile, sSecondFile});
}

bool SoftwareDownload::uploadMultiImage(const char* sFolder) {
    return RunTask(ServerTask::UploadMultiImage, "uploadMultiImage", {sFolder});
}

bool SoftwareDownload::uploadQcnFile(const char* sFile) {
    return RunTask(ServerTask::UploadQcnFile, "uploadQcnFile", {sFile});
}

bool SoftwareDownload::uploadQcnFile(const char* sFile, const char* sSpc) {
    return RunTask(ServerTask::UploadQcnFile, "uploadQcnFile", {sFile, sSpc});
}

bool SoftwareDownload::downloadQcnFile(const char* sFile, const char* sSpc) {
    return RunTask(ServerTask::DownloadQcnFile, "downloadQcnFile", {sFile, sSpc});
}
