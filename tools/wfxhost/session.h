// A running plug-in: it is started, receives announcements and is ended as by a file manager.
#pragma once

#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "common/failure.h"
#include "wfxhost/listing.h"
#include "wfxhost/phone_path.h"
#include "wfxhost/plugin_file.h"

namespace tools::wfxhost {

/// Returns the reason why nothing can be done with a path that is not representable.
std::string UnrepresentableReason(const PhonePath& path);

/// Receives the percentage of a running transfer. Returns true to stop it.
using ProgressFunction = std::function<bool(int percent)>;

/// Session starts the plug-in and disconnects it when destroyed. Only one session can exist at a time,
/// because the interface's callbacks do not say which session they belong to. It is used from one thread; log
/// lines and messages of the plug-in may come from any.
///
/// The operations return the plug-in's own result and announce themselves with FsStatusInfo. They throw
/// Failure when the plug-in does not offer the operation, and when a path is not representable.
///
/// A plug-in may explain a failure with a log line (MSGTYPE_IMPORTANTERROR). The code that handles the
/// failure reads the line with TakeReason. A line that was not read is printed on standard error when the
/// next operation begins.
class Session {
public:
    /// If `isVerbose` is set, every log line of the plug-in is printed on standard error.
    Session(PluginFile& plugin, bool isVerbose);
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    /// The result of a listing. A missing folder, a file, and a folder that the phone refused to read are all
    /// Empty: the interface has one result for them.
    enum class ListResult { Entries, Empty, NoResponse };

    /// Walk is an open listing. It is not announced.
    class Walk {
    public:
        Walk(Session& session, const PhonePath& folder, bool withSlash = true);
        ~Walk();
        Walk(const Walk&) = delete;
        Walk& operator=(const Walk&) = delete;

        /// Fetches the next entry, skipping "." and "..". False after the last one.
        bool Next(Entry& entry);
        /// False when the plug-in could not list at all.
        bool IsAnswered() const { return m_isAnswered; }

    private:
        PluginFile& m_plugin;
        HANDLE m_handle;
        FindRecord m_record;
        bool m_hasEntry;
        bool m_isAnswered;
    };

    /// While it exists, Batch announces that many entries are copied or deleted (FS_STATUS_OP_GET_MULTI,
    /// FS_STATUS_OP_PUT_MULTI, FS_STATUS_OP_DELETE) in a folder of the phone. The operations meanwhile
    /// announce nothing, except that folders are made, which is announced without a path.
    class Batch {
    public:
        Batch(Session& session, int operation, const PhonePath& folder);
        ~Batch();
        Batch(const Batch&) = delete;
        Batch& operator=(const Batch&) = delete;

    private:
        Session& m_session;
        const int m_operation;
        const std::string m_folder;
    };

    /// Lists a folder into `entries`, without "." and "..". Hosts pass the folder without a '/' at the end to
    /// show it in a panel, and with one (`withSlash`) to find something in it. Plug-ins may treat the two
    /// differently.
    ListResult List(const PhonePath& folder, std::vector<Entry>& entries, bool withSlash = true);

    /// Searches the listing of its folder for an entry; the root always exists. Throws Failure when the
    /// folder cannot be listed: NoHandset, or the plug-in's reason when the phone refused it.
    std::optional<Entry> Find(const PhonePath& path);
    /// Returns true when the path is a folder, or a link to a folder that has entries. Throws as Find does.
    bool IsFolder(const PhonePath& path);
    /// Returns true when the handset answers now. Keeps the reason of an earlier failure.
    bool Answers();
    /// Returns the failure to throw when nothing answered, with what the plug-in reported about it.
    Failure NoHandset();
    /// Returns the plug-in's explanation of what failed since the last operation began, and forgets it; empty
    /// if it sent none.
    std::string TakeReason();

    /// Copy one file. The results are FS_FILE_... codes of the interface. `localFile` is a LibraryName.
    int Get(const PhonePath& path, const Entry& entry, const std::string& localFile, int flags,
            const ProgressFunction& progress);
    int Put(const std::string& localFile, const PhonePath& path, int flags, const ProgressFunction& progress);
    /// Renames or moves within the phone.
    int Move(const PhonePath& from, const PhonePath& to, const Entry& entry, bool overwrite);
    bool MakeFolder(const PhonePath& path);
    bool RemoveFolder(const PhonePath& path);
    bool RemoveFile(const PhonePath& path);

    /// Lets the plug-in run a command that a user typed in the root folder. The result is an FS_EXEC_...
    /// code; with FS_EXEC_SYMLINK, `newPath` is the folder to change to, written with '/'.
    int TypedCommand(const std::string& command, std::string& newPath);
    /// Lets the plug-in show the properties of an entry. Returns the text, which is empty when the plug-in
    /// shows it itself.
    std::string ShowProperties(const PhonePath& path);

private:
    class Announcement;

    void PrintReasons();
    void Announce(const std::string& folder, bool asFolder, int moment, int operation);
    static int HOST_CALL OnProgress(int plugin, char* source, char* target, int percent);
    static void HOST_CALL OnLog(int plugin, int type, char* text);
    static BOOL HOST_CALL OnRequest(int plugin, int type, char* title, char* text, char* answer, int limit);

    PluginFile& m_plugin;
    const bool m_isVerbose;
    const Batch* m_batch = nullptr;               // the one that exists
    const ProgressFunction* m_progress = nullptr; // of the running transfer

    std::string* m_message = nullptr; // receives the text of a message; null: it is printed

    std::mutex m_logLock;
    std::string m_lastConnectionLine; // whether the plug-in last found a handset; under m_logLock
    std::string m_reasons;            // lines not read yet, separated by "; "; under m_logLock
    static Session* s_current;
};

} // namespace tools::wfxhost
