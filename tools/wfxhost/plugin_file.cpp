#include "wfxhost/plugin_file.h"

#include "common/failure.h"
#include "wfxhost/system.h"

namespace tools::wfxhost {

template <class Function>
void PluginFile::Find(Function*& function, const char* name) {
    function = reinterpret_cast<Function*>(FindSymbol(m_library, name));
}

template <class Function>
void PluginFile::Need(Function*& function, const char* name, const std::string& path) {
    Find(function, name);
    if (function)
        return;
    CloseLibrary(m_library);
    throw Failure(path + " is not a file-system plug-in: it has no function " + name);
}

PluginFile::PluginFile(const std::string& path) {
    std::string reason;
    m_library = OpenLibrary(path, reason);
    if (!m_library)
        throw Failure("cannot load the plug-in " + path + ": " + reason);
    Need(Init, "FsInit", path);
    Need(FindFirst, "FsFindFirst", path);
    Need(FindNext, "FsFindNext", path);
    Need(FindClose, "FsFindClose", path);
    Find(GetDefRootName, "FsGetDefRootName");
    Find(StatusInfo, "FsStatusInfo");
    Find(Disconnect, "FsDisconnect");
    Find(GetFile, "FsGetFile");
    Find(PutFile, "FsPutFile");
    Find(RemoveFile, "FsDeleteFile");
    Find(MkDir, "FsMkDir");
    Find(RemoveDir, "FsRemoveDir");
    Find(RenMovFile, "FsRenMovFile");
    Find(ExecuteFile, "FsExecuteFile");
}

PluginFile::~PluginFile() {
    CloseLibrary(m_library);
}

} // namespace tools::wfxhost
