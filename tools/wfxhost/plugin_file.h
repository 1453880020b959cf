// A file-system plug-in, loaded from its file, and its exported functions.
#pragma once

#include <string>

#include "platform/host_interface.h"

namespace tools::wfxhost {

/// PluginFile loads a plug-in and looks up its functions by their published names. The first four are never
/// null; each of the others is null if the plug-in does not offer the operation. The destructor unloads the
/// plug-in.
class PluginFile {
public:
    /// Loads the file. Throws Failure when it cannot be loaded or is not such a plug-in.
    explicit PluginFile(const std::string& path);
    ~PluginFile();
    PluginFile(const PluginFile&) = delete;
    PluginFile& operator=(const PluginFile&) = delete;

private:
    void* m_library = nullptr;

    template <class Function>
    void Find(Function*& function, const char* name);
    template <class Function>
    void Need(Function*& function, const char* name, const std::string& path);

public:
    int(HOST_CALL* Init)(int, tProgressProc, tLogProc, tRequestProc) = nullptr;
    HANDLE(HOST_CALL* FindFirst)(char*, WIN32_FIND_DATAA*) = nullptr;
    BOOL(HOST_CALL* FindNext)(HANDLE, WIN32_FIND_DATAA*) = nullptr;
    int(HOST_CALL* FindClose)(HANDLE) = nullptr;
    void(HOST_CALL* GetDefRootName)(char*, int) = nullptr;
    void(HOST_CALL* StatusInfo)(char*, int, int) = nullptr;
    BOOL(HOST_CALL* Disconnect)(char*) = nullptr;
    int(HOST_CALL* GetFile)(char*, char*, int, RemoteInfoStruct*) = nullptr;
    int(HOST_CALL* PutFile)(char*, char*, int) = nullptr;
    BOOL(HOST_CALL* RemoveFile)(char*) = nullptr;
    BOOL(HOST_CALL* MkDir)(char*) = nullptr;
    BOOL(HOST_CALL* RemoveDir)(char*) = nullptr;
    int(HOST_CALL* RenMovFile)(char*, char*, BOOL, BOOL, RemoteInfoStruct*) = nullptr;
    int(HOST_CALL* ExecuteFile)(HWND, char*, char*) = nullptr;
};

} // namespace tools::wfxhost
