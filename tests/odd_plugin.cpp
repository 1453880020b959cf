// A plug-in of the host's interface that is not quillet: its folders never end or have impossible names, and
// it fails as the environment says: ODD_RESULT is the result of copies, ODD_LINE the reason that it logs.
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

#include "platform/host_interface.h"

namespace {

tLogProc g_log = nullptr;
std::string g_names[4]; // of the listing that is open
int g_next = 0;

void Fill(WIN32_FIND_DATAA* record, const std::string& name, bool isFolder) {
    std::memset(static_cast<void*>(record), 0, sizeof *record);
    record->dwFileAttributes = isFolder ? FILE_ATTRIBUTE_DIRECTORY : 0;
    std::strncpy(record->cFileName, name.c_str(), sizeof record->cFileName - 1);
}

int Fail() {
    const char* line = std::getenv("ODD_LINE");
    std::string text = line ? line : "";
    if (line)
        g_log(1, MSGTYPE_IMPORTANTERROR, text.data());
    const char* result = std::getenv("ODD_RESULT");
    return result ? std::atoi(result) : FS_FILE_WRITEERROR;
}

} // namespace

extern "C" {
#define EXPORTED __attribute__((visibility("default")))

EXPORTED int FsInit(int, tProgressProc, tLogProc log, tRequestProc) {
    g_log = log;
    return 0;
}

EXPORTED BOOL FsFindNext(HANDLE, WIN32_FIND_DATAA* record) {
    const std::string name = g_names[g_next];
    if (name == "end")
        return 0;
    ++g_next;
    Fill(record, name, name != "file");
    return 1;
}

EXPORTED HANDLE FsFindFirst(char* path, WIN32_FIND_DATAA* record) {
    const std::string folder = path;
    if (folder.starts_with("/file"))
        return reinterpret_cast<HANDLE>(static_cast<intptr_t>(-1));
    const char* const names[] = {"file", folder == "/" ? "impossible" : "end", "endless", "end"};
    const char* const impossible[] = {"", "../endless", "end", "end"};
    const char* const endless[] = {"endless", "end", "end", "end"};
    for (int i = 0; i < 4; ++i)
        g_names[i] = folder.starts_with("/impossible") ? impossible[i]
                     : folder.starts_with("/endless")  ? endless[i]
                                                       : names[i];
    g_next = 0;
    FsFindNext(nullptr, record);
    return record;
}

EXPORTED int FsFindClose(HANDLE) {
    return 0;
}

EXPORTED int FsGetFile(char*, char*, int, RemoteInfoStruct*) {
    return Fail();
}

EXPORTED int FsPutFile(char*, char*, int) {
    return Fail();
}

EXPORTED BOOL FsDeleteFile(char*) {
    Fail();
    return 1; // a refusal does not show in the result
}
}
