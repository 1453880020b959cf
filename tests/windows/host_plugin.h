// The plug-in's file as a file manager uses it.
#pragma once

#include <windows.h>

#include <functional>
#include <string>
#include <vector>

/// HostedPlugin loads the plug-in and looks its functions up by their plain names. The callbacks that it
/// hands over record what the plug-in says; there is one at a time.
class HostedPlugin {
public:
    explicit HostedPlugin(const std::string& sFile);
    /// Gives the library back.
    ~HostedPlugin();
    HostedPlugin(const HostedPlugin&) = delete;
    HostedPlugin& operator=(const HostedPlugin&) = delete;

    /// Start calls FsInit.
    void Start();
    /// Every path is written with '\'. Entries are names, folders with a '\' behind, separated by blanks.
    std::string List(const std::string& sPath);
    int Get(const std::string& sPhone, const std::string& sLocal, int iFlags = 0);
    int Put(const std::string& sLocal, const std::string& sPhone, int iFlags = 0);
    int Move(const std::string& sOld, const std::string& sNew, bool bOverWrite = false);
    bool MakeFolder(const std::string& sPath);
    bool RemoveFolder(const std::string& sPath);
    bool RemoveFile(const std::string& sPath);
    /// "RESULT NAME" with what stands in the name buffer afterwards.
    std::string Execute(const std::string& sPath, const std::string& sVerb);
    void Status(bool bStart);
    bool Disconnect();

    /// The log lines since the last call, separated by "; ".
    std::string TakeLog();

    std::function<int(int iPercent)> onProgress;

private:
    template <class Function>
    Function* Find(const char* sName) const;

    HMODULE m_hLibrary;
};

/// PumpMessages dispatches the thread's messages until `until` holds; false when that takes longer than two
/// minutes.
bool PumpMessages(const std::function<bool()>& until);
