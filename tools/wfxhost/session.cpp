#include "wfxhost/session.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <utility>

#include "common/text.h"
#include "wfxhost/system.h"

namespace tools::wfxhost {
namespace {

constexpr int kPluginNumber = 1;
/// The room after a path that every host leaves for plug-ins that change the path in place.
constexpr size_t kPathRoom = 4096;

/// A path as a host passes it: with the host's separators, in memory that the plug-in may change.
class HostPath {
public:
    explicit HostPath(const std::string& path, bool asFolder = false) : m_bytes(path.begin(), path.end()) {
        if (asFolder && path != "/")
            m_bytes.push_back('/');
        std::replace(m_bytes.begin(), m_bytes.end(), '/', kHostSeparator);
        m_bytes.resize(m_bytes.size() + kPathRoom);
    }
    explicit HostPath(const PhonePath& path, bool asFolder = false) : HostPath(path.Text(), asFolder) {
        if (!path.IsRepresentable())
            throw Failure(UnrepresentableReason(path));
    }
    char* Bytes() { return m_bytes.data(); }

private:
    std::vector<char> m_bytes;
};

template <class Function>
Function* Offered(Function* function, const char* what) {
    if (!function)
        throw Failure(std::string("this plug-in cannot ") + what);
    return function;
}

RemoteInfoStruct RemoteInfo(const Entry& entry) {
    RemoteInfoStruct info = {};
    info.SizeLow = static_cast<DWORD>(entry.size);
    info.SizeHigh = static_cast<DWORD>(entry.size >> 32);
    info.LastWriteTime = entry.written;
    info.Attr = entry.isFolder ? static_cast<int>(FILE_ATTRIBUTE_DIRECTORY) : 0;
    return info;
}

} // namespace

std::string UnrepresentableReason(const PhonePath& path) {
    return "a name with a backslash cannot be passed to a plug-in: " + Quoted(path.Text());
}

Session* Session::s_current = nullptr;

/// Announces the beginning of an operation to the plug-in, and its end when destroyed. Within a batch it
/// announces what hosts announce there.
class Session::Announcement {
public:
    Announcement(Session& session, int operation, const PhonePath& folder, bool asFolder = true)
        : m_session(session),
          m_operation(operation),
          m_folder(session.m_batch ? "" : folder.Text()),
          m_asFolder(asFolder && !session.m_batch),
          m_isSilent(session.m_batch && operation != FS_STATUS_OP_MKDIR) {
        m_session.PrintReasons();
        Announce(FS_STATUS_START);
    }
    ~Announcement() { Announce(FS_STATUS_END); }
    Announcement(const Announcement&) = delete;
    Announcement& operator=(const Announcement&) = delete;

private:
    void Announce(int moment) {
        if (!m_isSilent)
            m_session.Announce(m_folder, m_asFolder, moment, m_operation);
    }

    Session& m_session;
    const int m_operation;
    const std::string m_folder;
    const bool m_asFolder;
    const bool m_isSilent;
};

Session::Batch::Batch(Session& session, int operation, const PhonePath& folder)
    : m_session(session), m_operation(operation), m_folder(folder.Text()) {
    m_session.Announce(m_folder, true, FS_STATUS_START, m_operation);
    m_session.m_batch = this;
}

Session::Batch::~Batch() {
    m_session.m_batch = nullptr;
    m_session.Announce(m_folder, true, FS_STATUS_END, m_operation);
}

Session::Walk::Walk(Session& session, const PhonePath& folder, bool withSlash) : m_plugin(session.m_plugin) {
    HostPath path(folder, withSlash);
    ClearLastError();
    m_handle = m_plugin.FindFirst(path.Bytes(), m_record.Empty());
    // -1 is the interface's INVALID_HANDLE_VALUE.
    m_hasEntry = reinterpret_cast<intptr_t>(m_handle) != -1;
    m_isAnswered = m_hasEntry || LastErrorSaysNoMoreFiles();
}

Session::Walk::~Walk() {
    if (reinterpret_cast<intptr_t>(m_handle) != -1)
        m_plugin.FindClose(m_handle);
}

bool Session::Walk::Next(Entry& entry) {
    while (m_hasEntry) {
        entry = m_record.Take();
        m_hasEntry = m_plugin.FindNext(m_handle, m_record.Empty()) != 0;
        if (entry.name != "." && entry.name != "..")
            return true;
    }
    return false;
}

Session::Session(PluginFile& plugin, bool isVerbose) : m_plugin(plugin), m_isVerbose(isVerbose) {
    s_current = this;
    m_plugin.Init(kPluginNumber, OnProgress, OnLog, OnRequest);
}

Session::~Session() {
    char name[MAX_PATH] = {};
    if (m_plugin.GetDefRootName)
        m_plugin.GetDefRootName(name, sizeof name);
    HostPath root("/" + std::string(name));
    if (m_plugin.Disconnect)
        m_plugin.Disconnect(root.Bytes());
    PrintReasons();
}

void Session::Announce(const std::string& folder, bool asFolder, int moment, int operation) {
    HostPath path(folder, asFolder);
    if (m_plugin.StatusInfo)
        m_plugin.StatusInfo(path.Bytes(), moment, operation);
}

Session::ListResult Session::List(const PhonePath& folder, std::vector<Entry>& entries, bool withSlash) {
    entries.clear();
    const Announcement announcement(*this, FS_STATUS_OP_LIST, folder, false);
    Walk walk(*this, folder, withSlash);
    for (Entry entry; walk.Next(entry);)
        entries.push_back(entry);
    if (!walk.IsAnswered())
        return ListResult::NoResponse;
    return entries.empty() ? ListResult::Empty : ListResult::Entries;
}

std::optional<Entry> Session::Find(const PhonePath& path) {
    std::vector<Entry> entries;
    const ListResult result = List(path.Folder(), entries);
    if (result == ListResult::NoResponse)
        throw NoHandset();
    if (const std::string refusal = TakeReason(); result == ListResult::Empty && !refusal.empty()) {
        // A missing folder has no entries. An existing one that the phone refuses to read is a failure.
        const std::optional<Entry> folder = path.Folder().IsRoot() ? std::nullopt : Find(path.Folder());
        if (path.Folder().IsRoot() || (folder && folder->isFolder))
            throw Failure(refusal);
    }
    if (path.IsRoot()) {
        Entry root;
        root.isFolder = true;
        return root;
    }
    for (Entry& entry : entries) {
        if (entry.name == path.Name())
            return std::move(entry);
    }
    return std::nullopt;
}

bool Session::IsFolder(const PhonePath& path) {
    const std::optional<Entry> entry = Find(path);
    if (!entry || entry->isFolder)
        return entry.has_value();
    std::vector<Entry> entries;
    const bool hasEntries = List(path, entries) == ListResult::Entries;
    TakeReason(); // it is not a failure that a file is not a folder
    return hasEntries;
}

bool Session::Answers() {
    const std::string reason = TakeReason();
    std::vector<Entry> entries;
    const bool answers = List(PhonePath(), entries) != ListResult::NoResponse;
    const std::lock_guard lock(m_logLock);
    m_reasons = reason;
    return answers;
}

Failure Session::NoHandset() {
    const std::string reason = TakeReason();
    const std::lock_guard lock(m_logLock);
    if (m_lastConnectionLine.starts_with("CONNECTED"))
        return Failure(
            "the handset does not answer (the plug-in: " + m_lastConnectionLine + ")" +
                (reason.empty() ? "; another program may be using its port, or you may lack permission"
                                : ": " + reason),
            Status::NoHandset);
    return Failure(
        "no handset answers" + (reason.empty() ? "; is one attached and switched on?" : ": " + reason),
        Status::NoHandset);
}

std::string Session::TakeReason() {
    const std::lock_guard lock(m_logLock);
    return std::exchange(m_reasons, "");
}

void Session::PrintReasons() {
    const std::string reason = TakeReason();
    if (!reason.empty())
        std::fprintf(stderr, "%s\n", reason.c_str());
}

int Session::Get(const PhonePath& path, const Entry& entry, const std::string& localFile, int flags,
                 const ProgressFunction& progress) {
    auto* function = Offered(m_plugin.GetFile, "copy files from the phone");
    const Announcement announcement(*this, FS_STATUS_OP_GET_SINGLE, path.Folder());
    HostPath phone(path);
    std::string local = localFile;
    RemoteInfoStruct info = RemoteInfo(entry);
    m_progress = &progress;
    const int result = function(phone.Bytes(), local.data(), flags, &info);
    m_progress = nullptr;
    return result;
}

int Session::Put(const std::string& localFile, const PhonePath& path, int flags,
                 const ProgressFunction& progress) {
    auto* function = Offered(m_plugin.PutFile, "copy files to the phone");
    const Announcement announcement(*this, FS_STATUS_OP_PUT_SINGLE, path.Folder());
    HostPath phone(path);
    std::string local = localFile;
    m_progress = &progress;
    const int result = function(local.data(), phone.Bytes(), flags);
    m_progress = nullptr;
    return result;
}

int Session::Move(const PhonePath& from, const PhonePath& to, const Entry& entry, bool overwrite) {
    auto* function = Offered(m_plugin.RenMovFile, "rename");
    const Announcement announcement(*this, FS_STATUS_OP_RENMOV_SINGLE, from.Folder());
    HostPath oldPath(from);
    HostPath newPath(to);
    RemoteInfoStruct info = RemoteInfo(entry);
    return function(oldPath.Bytes(), newPath.Bytes(), 1, overwrite, &info);
}

bool Session::MakeFolder(const PhonePath& path) {
    auto* function = Offered(m_plugin.MkDir, "make folders");
    const Announcement announcement(*this, FS_STATUS_OP_MKDIR, path.Folder());
    return function(HostPath(path).Bytes()) != 0;
}

bool Session::RemoveFolder(const PhonePath& path) {
    auto* function = Offered(m_plugin.RemoveDir, "remove folders");
    const Announcement announcement(*this, FS_STATUS_OP_DELETE, path.Folder());
    return function(HostPath(path).Bytes()) != 0;
}

bool Session::RemoveFile(const PhonePath& path) {
    auto* function = Offered(m_plugin.RemoveFile, "delete files");
    const Announcement announcement(*this, FS_STATUS_OP_DELETE, path.Folder());
    return function(HostPath(path).Bytes()) != 0;
}

int Session::TypedCommand(const std::string& command, std::string& newPath) {
    auto* function = Offered(m_plugin.ExecuteFile, "carry out commands");
    const Announcement announcement(*this, FS_STATUS_OP_EXEC, PhonePath());
    HostPath name("/");
    std::string verb = "quote " + command;
    const int result = function(nullptr, name.Bytes(), verb.data());
    newPath = name.Bytes();
    std::replace(newPath.begin(), newPath.end(), kHostSeparator, '/');
    return result;
}

std::string Session::ShowProperties(const PhonePath& path) {
    auto* function = Offered(m_plugin.ExecuteFile, "show properties");
    const Announcement announcement(*this, FS_STATUS_OP_EXEC, path.Folder());
    HostPath name(path);
    std::string verb = "properties";
    std::string text;
    m_message = &text;
    function(nullptr, name.Bytes(), verb.data());
    m_message = nullptr;
    return text;
}

int HOST_CALL Session::OnProgress(int, char*, char*, int percent) {
    const ProgressFunction* progress = s_current->m_progress;
    return progress && (*progress)(percent) ? 1 : 0;
}

void HOST_CALL Session::OnLog(int, int type, char* text) {
    if (!text)
        return;
    const std::string line = text;
    const std::lock_guard lock(s_current->m_logLock);
    if (s_current->m_isVerbose)
        std::fprintf(stderr, "log: %s\n", Printable(line).c_str());
    if (type == MSGTYPE_IMPORTANTERROR)
        s_current->m_reasons += (s_current->m_reasons.empty() ? "" : "; ") + Printable(line);
    // A reconnect reports the new connection before the end of the old one.
    if (line.starts_with("CONNECTED") || line.starts_with("NOT CONNECTED"))
        s_current->m_lastConnectionLine = line;
}

BOOL HOST_CALL Session::OnRequest(int, int type, char* title, char* text, char*, int) {
    if (type == RT_MsgOK && s_current->m_message) {
        *s_current->m_message = text ? text : "";
        return 1;
    }
    std::fprintf(stderr, "%s%s%s\n", title ? Printable(title).c_str() : "", title && *title ? ": " : "",
                 text ? Printable(text).c_str() : "");
    // Nobody can answer a question here, so only plain messages are acknowledged.
    return type == RT_MsgOK;
}

} // namespace tools::wfxhost
