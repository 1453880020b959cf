#include "qdiag/efs/phone_files.h"

#include <array>
#include <cstring>
#include <set>

#include "common/interrupt.h"

namespace tools::qdiag {
namespace {

constexpr int kAttempts = 3;
constexpr DWORD kUnset = 0xFFFFFFFF; // a response that lacks its error number leaves this
constexpr DWORD kNotOpen = 9;
constexpr uint32_t kPermissions = 07777;

// Flags of EFS2_DIAG_OPEN.
constexpr DWORD kReadOnly = 0;
constexpr DWORD kWriteOnly = 1;
constexpr DWORD kCreate = 0x40;
constexpr DWORD kExclusive = 0x80;

Kind KindOfMode(DWORD mode) {
    switch (mode & 0xF000) {
        case 0x8000:
            return Kind::File;
        case 0x4000:
            return Kind::Folder;
        case 0xA000:
            return Kind::Link;
        default:
            return Kind::Special;
    }
}

Kind KindOfEntry(DWORD type) {
    switch (type) {
        case EFS2_ENTRY_FILE:
            return Kind::File;
        case EFS2_ENTRY_DIRECTORY:
            return Kind::Folder;
        case EFS2_ENTRY_LINK:
            return Kind::Link;
        default:
            return Kind::Special;
    }
}

PhoneEntry EntryOf(const Efs2DirEntry& listed) {
    PhoneEntry entry;
    entry.name = listed.sName + (listed.sName[0] == '/' ? 1 : 0); // some phones begin names with it
    entry.kind = KindOfEntry(listed.iType);
    entry.mode = listed.iMode & kPermissions;
    entry.size = listed.iSize;
    entry.accessed = listed.iAtime;
    entry.modified = listed.iMtime;
    entry.changed = listed.iCtime;
    if (listed.bNameIsCut)
        entry.problem = "the name is too long for the phone's listing";
    else if (entry.name.empty() || entry.name.find('/') != std::string::npos)
        entry.problem = "the phone's listing has no usable name";
    return entry;
}

} // namespace

const char* KindText(Kind kind) {
    switch (kind) {
        case Kind::File:
            return "file";
        case Kind::Folder:
            return "folder";
        case Kind::Link:
            return "link";
        case Kind::Special:
            break;
    }
    return "special file";
}

// --- Requests ------------------------------------------------------------------------------------------

/// Sends a request until it is answered. `call` gets the connection and the error number to set.
template <class Call>
Outcome PhoneFiles::AskAnyway(Call call) {
    OperationFailure failure;
    for (int i = 0; i < kAttempts; ++i) {
        DWORD error = kUnset;
        const bool isAnswered = call(*m_phone.operator->(), error);
        if (isAnswered && error == 0)
            return {"", 0, i > 0};
        failure = m_phone->EFS2_LastFailure();
        if (isAnswered || failure.eKind == OperationFailure::Kind::NotSent)
            return {EFS2_FailureText(failure), error, i > 0};
        m_isGone = !m_phone.Answers();
        if (m_isGone)
            throw Failure("the handset stopped answering: " + m_aftermath);
    }
    return {"the phone sent no usable response", kUnset, true};
}

template <class Call>
Outcome PhoneFiles::Ask(Call call) {
    if (Interrupted())
        throw Failure("interrupted: " + m_aftermath);
    return AskAnyway(call);
}

// --- Asking --------------------------------------------------------------------------------------------

Outcome PhoneFiles::Stat(const std::string& path, PhoneEntry& entry) {
    return Ask([&](Diag_FTM& phone, DWORD& error) {
        DWORD mode = 0;
        const bool isAnswered = phone.EFS2_DIAG_STAT(path.c_str(), error, mode, entry.size, entry.links,
                                                     entry.accessed, entry.modified, entry.changed);
        entry.kind = KindOfMode(mode);
        entry.mode = mode & kPermissions;
        return isAnswered;
    });
}

Outcome PhoneFiles::LinkTarget(const std::string& path, std::string& target) {
    char text[Diag_FTM::kEfs2TextSize] = "";
    Outcome outcome = Ask([&](Diag_FTM& phone, DWORD& error) {
        return phone.EFS2_DIAG_LINK_TARGET(path.c_str(), text, error);
    });
    target = text;
    return outcome;
}

void PhoneFiles::CloseFolder(DWORD directory) {
    AskAnyway([&](Diag_FTM& phone, DWORD& error) { return phone.EFS2_DIAG_CLOSEDIR(directory, error); });
}

Outcome PhoneFiles::List(const std::string& folder, std::vector<PhoneEntry>& entries) {
    DWORD directory = 0;
    Outcome outcome = Ask([&](Diag_FTM& phone, DWORD& error) {
        return phone.EFS2_DIAG_OPENDIR(folder.c_str(), directory, error);
    });
    std::set<std::string> names;
    for (DWORD number = 1; outcome.IsGranted(); ++number) {
        Efs2DirEntry listed;
        // After Ctrl-C the folder is closed before anything is thrown.
        const bool isStopped = Interrupted();
        if (!isStopped)
            outcome = AskAnyway([&](Diag_FTM& phone, DWORD& error) {
                return phone.EFS2_DIAG_READDIR(directory, number, listed, error);
            });
        if (isStopped || !outcome.IsGranted() || listed.sName[0] == '\0') {
            CloseFolder(directory);
            break;
        }
        PhoneEntry entry = EntryOf(listed);
        if (entry.name == "." || entry.name == "..")
            continue;
        if (!names.insert(entry.name).second && entry.problem.empty())
            entry.problem = "the phone lists the name twice";
        entries.push_back(std::move(entry));
    }
    if (Interrupted())
        throw Failure("interrupted: " + m_aftermath);
    return outcome;
}

// --- Contents ------------------------------------------------------------------------------------------

/// A file that is open on the phone. The destructor closes it.
class PhoneFiles::OpenFile {
public:
    explicit OpenFile(PhoneFiles& files) : m_files(files) {}
    ~OpenFile() {
        try {
            if (m_descriptor >= 0 && !m_files.m_isGone)
                Close();
        } catch (const Failure&) {
            // The reason for which the file is left already ends the command.
        }
    }
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;

    Outcome Open(const std::string& path, DWORD flags, uint32_t mode) {
        return m_files.Ask([&](Diag_FTM& phone, DWORD& error) {
            return phone.EFS2_DIAG_OPEN(path.c_str(), flags, mode, m_descriptor, error);
        });
    }
    Outcome Read(DWORD offset, std::span<unsigned char> area, DWORD& count) {
        return m_files.Ask([&](Diag_FTM& phone, DWORD& error) {
            return phone.EFS2_DIAG_READ(m_descriptor, offset, area.data(), static_cast<DWORD>(area.size()),
                                        count, error);
        });
    }
    Outcome Write(DWORD offset, std::span<const unsigned char> bytes, DWORD& count) {
        return m_files.Ask([&](Diag_FTM& phone, DWORD& error) {
            return phone.EFS2_DIAG_WRITE(m_descriptor, offset, bytes.data(), static_cast<DWORD>(bytes.size()),
                                         count, error);
        });
    }
    Outcome Close() {
        const LONG descriptor = m_descriptor;
        m_descriptor = -1;
        const Outcome outcome = m_files.AskAnyway(
            [&](Diag_FTM& phone, DWORD& error) { return phone.EFS2_DIAG_CLOSE(descriptor, error); });
        // When a response was lost, the library repeats the request for a file that is closed already.
        return outcome.error == kNotOpen ? Outcome{} : outcome;
    }

private:
    PhoneFiles& m_files;
    LONG m_descriptor = -1;
};

Outcome PhoneFiles::Read(const std::string& path, uint32_t size, const Sink& sink) {
    OpenFile file(*this);
    Outcome outcome = file.Open(path, kReadOnly, 0);
    std::array<unsigned char, Diag_FTM::kEfs2MostRead> block;
    DWORD offset = 0;
    DWORD count = size == 0 ? 0 : static_cast<DWORD>(block.size());
    while (outcome.IsGranted() && count == block.size() && offset != size) {
        count = 0;
        outcome = file.Read(offset, block, count);
        offset += count;
        if (count > 0 && !sink(std::span(block).first(count)))
            break;
    }
    return outcome;
}

Outcome PhoneFiles::OpenNew(OpenFile& file, const std::string& path, uint32_t mode) {
    constexpr DWORD kFlags = kWriteOnly | kCreate | kExclusive;
    Outcome outcome = file.Open(path, kFlags, mode);
    // When the first response was lost, the file is there already.
    if (outcome.error == EFS2_ERROR_EXISTS && Remove(path))
        outcome = file.Open(path, kFlags, mode);
    return outcome;
}

Outcome PhoneFiles::Write(const std::string& path, uint32_t mode, const Source& source) {
    OpenFile file(*this);
    Outcome outcome = OpenNew(file, path, mode);
    std::array<unsigned char, Diag_FTM::kEfs2MostWritten> block;
    DWORD offset = 0;
    while (outcome.IsGranted()) {
        const size_t size = source(block);
        if (size == 0)
            return file.Close(); // only now does the phone say whether it has all of it
        for (size_t done = 0; outcome.IsGranted() && done < size;) {
            DWORD count = 0;
            outcome = file.Write(offset, std::span(block).first(size).subspan(done), count);
            done += count;
            offset += count;
        }
    }
    return outcome;
}

// --- Changing names ------------------------------------------------------------------------------------

Outcome PhoneFiles::MakeFolder(const std::string& path, uint32_t mode) {
    const Outcome outcome = Ask([&](Diag_FTM& phone, DWORD& error) {
        return phone.EFS2_DIAG_MAKE_DIRECTORY(path.c_str(), mode, error);
    });
    return outcome.wasRepeated && outcome.error == EFS2_ERROR_EXISTS ? Outcome{} : outcome;
}

Outcome PhoneFiles::MakeLink(const std::string& path, const std::string& target) {
    const Outcome outcome = Ask([&](Diag_FTM& phone, DWORD& error) {
        return phone.EFS2_DIAG_MAKE_LINK(path.c_str(), target.c_str(), error);
    });
    return outcome.wasRepeated && outcome.error == EFS2_ERROR_EXISTS ? Outcome{} : outcome;
}

Outcome PhoneFiles::Rename(const std::string& from, const std::string& to) {
    const Outcome outcome = Ask([&](Diag_FTM& phone, DWORD& error) {
        return phone.EFS2_DIAG_RENAME(from.c_str(), to.c_str(), error);
    });
    return outcome.wasRepeated && outcome.error == EFS2_ERROR_NOT_THERE ? Outcome{} : outcome;
}

Outcome PhoneFiles::ChangeMode(const std::string& path, uint32_t mode) {
    return Ask(
        [&](Diag_FTM& phone, DWORD& error) { return phone.EFS2_DIAG_CHMOD(mode, path.c_str(), error); });
}

bool PhoneFiles::Remove(const std::string& path) {
    if (m_isGone)
        return false;
    try {
        const Outcome outcome = AskAnyway(
            [&](Diag_FTM& phone, DWORD& error) { return phone.EFS2_DIAG_REMOVE_FILE(path.c_str(), error); });
        return outcome.IsGranted() || outcome.error == EFS2_ERROR_NOT_THERE;
    } catch (const Failure&) {
        return false;
    }
}

} // namespace tools::qdiag
