#include "portserver/efs.h"

namespace {

constexpr DWORD kSilenceLimit_ms = 600000;

} // namespace

EFS::EFS(const char* sClientName, std::shared_ptr<ComThreadManager> pComThread)
    : Dispatched("EFS", sClientName, std::move(pComThread)) {
    ConfigureTimeOut(QMSL_TimeOut_MultipleResponse, kSilenceLimit_ms);
}
EFS::~EFS() = default;

bool EFS::connect(unsigned short iComPort) {
    return Connect(PortName(iComPort));
}

void EFS::ConfigureCallBacks(EfsDirectoryCallBack pfnDirectory, void* pUserData) {
    m_pfnDirectory = pfnDirectory;
    m_pUserData = pUserData;
}

void EFS::OnEntry(const EfsDirItem& item) {
    EfsDirItem entry = item;
    entry.sName[sizeof entry.sName - 1] = '\0';
    if (m_pfnDirectory != nullptr)
        m_pfnDirectory(entry.sName, static_cast<unsigned char>(entry.isFile), entry.Mask, entry.BufOption,
                       entry.Clean, entry.Date, entry.FileSize, m_pUserData);
}

bool EFS::EfsDirectory(const char* sFolderPath) {
    return RunTask(ServerTask::EfsDirectory, "EfsDirectory", {sFolderPath});
}

bool EFS::EfsRead(const char* sEFS_File, const char* sLocalFile) {
    return RunTask(ServerTask::EfsRead, "EfsRead", {sEFS_File, sLocalFile});
}

bool EFS::EfsWrite(const char* sLocalFile, const char* sEFS_File) {
    return RunTask(ServerTask::EfsWrite, "EfsWrite", {sLocalFile, sEFS_File});
}

bool EFS::EfsDelete(const char* sFilePath) {
    return RunTask(ServerTask::EfsDelete, "EfsDelete", {sFilePath});
}

bool EFS::EfsMkDir(const char* sFolderPath) {
    return RunTask(ServerTask::EfsMkDir, "EfsMkDir", {sFolderPath}, "pAtlasEfs->CreateDir() failed");
}

bool EFS::EfsRmDir(const char* sFolderPath) {
    return RunTask(ServerTask::EfsRmDir, "EfsRmDir", {sFolderPath});
}

bool EFS::EfsRmTree(const char* sFolderPath) {
    return RunTask(ServerTask::EfsRmTree, "EfsRmTree", {sFolderPath});
}

bool EFS::CreateCEFS(const char* sLocalFile) {
    return RunTask(ServerTask::CreateCEFS, "CreateCEFS", {sLocalFile});
}

bool EFS::DownloadPRL(const char* sLocalFile) {
    return RunTask(ServerTask::DownloadPRL, "DownloadPRL", {sLocalFile});
}

bool EFS::UploadPRL(const char* sLocalFile) {
    return RunTask(ServerTask::UploadPRL, "UploadPRL", {sLocalFile});
}

bool EFS::NotImplemented(const char* sName) {
    Error(Operation(sName) + " - not implemented");
    return false;
}

bool EFS::EfsSetPermissions(const char*, unsigned short) {
    return NotImplemented("EfsSetPermissions");
}

bool EFS::EfsBackupDir(const char*, const char*) {
    return NotImplemented("EfsBackupDir");
}

bool EFS::EfsRestoreDir(const char*, const char*) {
    return NotImplemented("EfsRestoreDir");
}

bool EFS::EfsVerify(const char*, const char*) {
    return NotImplemented("EfsVerify");
}
