// Uses the plug-in's file as a file manager does.
#pragma once

#include <windows.h>

#include <functional>
#include <string>
#include <vector>

/// HostedPlugin loads the plug-in and looks up its functions by their undecorated names. Its callbacks record
/// what the plug-in reports. Only one object at a time.
class HostedPlugin {
public:
    explicit HostedPlugin(const std::string& sFile);
    /// Unloads the library.
    ~HostedPlugin();
    HostedPlugin(const HostedPlugin&) = delete;
    HostedPlugin& operator=(const HostedPlugin&) = delete;

    /// Calls FsInit.
    void Start();
    /// Lists a folder. Returns the names, separated by blanks; a '\' follows the names of folders. All paths
    /// are written with '\'.
    std::string List(const std::string& sPath);
    int Get(const std::string& sPhone, const std::string& sLocal, int iFlags = 0);
    int Put(const std::string& sLocal, const std::string& sPhone, int iFlags = 0);
    int Move(const std::string& sOld, const std::string& sNew, bool bOverWrite = false);
    bool MakeFolder(const std::string& sPath);
    bool RemoveFolder(const std::string& sPath);
    bool RemoveFile(const std::string& sPath);
    /// Returns "RESULT NAME", where NAME is the content of the name buffer afterwards.
    std::string Execute(const std::string& sPath, const std::string& sVerb);
    void Status(bool bStart);
    bool Disconnect();

    /// Returns the log lines since the last call, separated by "; ".
    std::string TakeLog();

    std::function<int(int iPercent)> onProgress;

private:
    template <class Function>
    Function* Find(const char* sName) const;

    HMODULE m_hLibrary;
};

/// Dispatches the thread's messages until `until` holds. Returns false when that takes longer than two
/// minutes.
bool PumpMessages(const std::function<bool()>& until);
