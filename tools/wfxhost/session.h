// A plug-in at work: started, told about each operation, and ended as file managers do it.
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

/// UntellableReason returns the reason why nothing can be done with a path that is not tellable.
std::string UntellableReason(const PhonePath& path);

/// Receives the percentage of a running transfer; true asks the plug-in to stop it.
using ProgressFunction = std::function<bool(int percent)>;

/// Session starts the plug-in and disconnects it at its end. There is one at a time, because the interface's
/// callbacks do not say which session they belong to. It is used from one thread; the plug-in's log lines and
/// messages may come from any.
///
/// The operations return the plug-in's own result, and announce themselves with FsStatusInfo. They throw
/// Failure where the plug-in does not offer the operation, or the path is not tellable.
///
/// Plug-ins may explain a failure with a log line (MSGTYPE_IMPORTANTERROR). Whoever handles a failure takes
/// the line with TakeReason; a line that nobody took is printed on standard error when the next operation
/// begins.
class Session {
public:
    /// `isVerbose`: every log line of the plug-in is printed on standard error.
    Session(PluginFile& plugin, bool isVerbose);
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    /// The result of a listing. A folder that is missing, a file, and a folder that the phone refused to read
    /// all look Empty: the interface has one result for them.
    enum class ListResult { Entries, Empty, NoAnswer };

    /// Walk is an open listing. It is not announced.
    class Walk {
    public:
        Walk(Session& session, const PhonePath& folder, bool withSlash = true);
        ~Walk();
        Walk(const Walk&) = delete;
        Walk& operator=(const Walk&) = delete;

        /// Next returns the next entry, "." and ".." left out; false after the last one.
        bool Next(Entry& entry);
        /// IsAnswered is false when the plug-in could not list at all.
        bool IsAnswered() const { return m_isAnswered; }

    private:
        PluginFile& m_plugin;
        HANDLE m_handle;
        FindRecord m_record;
        bool m_hasEntry;
        bool m_isAnswered;
    };

    /// Batch announces, while it lives, that many entries are copied or deleted (FS_STATUS_OP_GET_MULTI,
    /// FS_STATUS_OP_PUT_MULTI, FS_STATUS_OP_DELETE) in a folder of the phone. The operations in between then
    /// announce nothing, except the making of folders, which is announced without a path.
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

    /// List lists a folder into `entries`, without "." and "..". Hosts name the folder without a '/' at the
    /// end to show it in a panel, and with one (`withSlash`) to look something up in it; plug-ins may treat
    /// the two differently.
    ListResult List(const PhonePath& folder, std::vector<Entry>& entries, bool withSlash = true);

    /// Find looks an entry up in the listing of its folder; the root is always found. Throws Failure when the
    /// folder cannot be listed: no handset, or the plug-in's reason when the phone refused it.
    std::optional<Entry> Find(const PhonePath& path);
    /// IsFolder says whether the path is a folder, or a link to a folder that has entries. Throws as Find.
    bool IsFolder(const PhonePath& path);
    /// Answers says whether the handset answers now. It leaves the reason of an earlier failure alone.
    bool Answers();
    /// NoHandset returns the failure to throw when nothing answered, with what the plug-in said about it.
    Failure NoHandset();
    /// TakeReason returns, and forgets, the plug-in's explanation of what failed since the last operation
    /// began; empty when it sent none.
    std::string TakeReason();

    /// Copies of one file; the results are the interface's FS_FILE_... codes. `localFile` is a LibraryName.
    int Get(const PhonePath& path, const Entry& entry, const std::string& localFile, int flags,
            const ProgressFunction& progress);
    int Put(const std::string& localFile, const PhonePath& path, int flags, const ProgressFunction& progress);
    /// Move renames or moves within the phone.
    int Move(const PhonePath& from, const PhonePath& to, const Entry& entry, bool overwrite);
    bool MakeFolder(const PhonePath& path);
    bool RemoveFolder(const PhonePath& path);
    bool RemoveFile(const PhonePath& path);

    /// TypedCommand has the plug-in carry out a command that the user typed in the root folder. The result is
    /// an FS_EXEC_... code; with FS_EXEC_SYMLINK `newPath` is the folder to change to, written with '/'.
    int TypedCommand(const std::string& command, std::string& newPath);
    /// ShowProperties has the plug-in show an entry's properties. Returns the text, which is empty where the
    /// plug-in shows it itself.
    std::string ShowProperties(const PhonePath& path);

private:
    class Announced;

    void PrintReasons();
    void Tell(const std::string& folder, bool asFolder, int moment, int operation);
    static int HOST_CALL OnProgress(int plugin, char* source, char* target, int percent);
    static void HOST_CALL OnLog(int plugin, int type, char* text);
    static BOOL HOST_CALL OnRequest(int plugin, int type, char* title, char* text, char* answer, int limit);

    PluginFile& m_plugin;
    const bool m_isVerbose;
    const Batch* m_batch = nullptr;               // the one that lives
    const ProgressFunction* m_progress = nullptr; // of the running transfer

    std::string* m_message = nullptr; // takes the text of a message; null: it is printed

    std::mutex m_logLock;
    std::string m_lastConnectionLine; // whether the plug-in last found a handset; under m_logLock
    std::string m_reasons;            // lines that nobody took so far, "; " between them; under m_logLock
    static Session* s_current;
};

} // namespace tools::wfxhost
