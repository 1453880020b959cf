// The phone's files, folders and links, as the efs commands use them.
#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <vector>

#include "qdiag/phone.h"

namespace tools::qdiag {

enum class Kind { File, Folder, Link, Special };

/// Returns "file", "folder", "link" or "special file".
const char* KindText(Kind kind);

/// What the phone reports about an entry. Times are seconds since 1970, UTC.
struct PhoneEntry {
    std::string name; // set only by a listing
    Kind kind = Kind::File;
    DWORD mode = 0; // the lowest 12 bits: permissions
    DWORD size = 0;
    DWORD links = 0; // set only by a status
    DWORD accessed = 0;
    DWORD modified = 0;
    DWORD changed = 0;
    std::string problem; // why a listed name cannot be used; empty when it can
};

/// What became of a request.
struct Outcome {
    std::string reason;       // why it was not granted, in words that end a sentence; empty: it was
    DWORD error = 0;          // the phone's error number, if it refused
    bool wasRepeated = false; // a response was lost, so the phone may have carried the request out before

    bool IsGranted() const { return reason.empty(); }
};

/// PhoneFiles sends requests about files. A request whose response is lost is sent again, three times in all.
/// Paths begin with '/'. Every operation throws Failure when the phone no longer answers, and, before it
/// sends anything, when the user pressed Ctrl-C under an InterruptGuard. One thread.
class PhoneFiles {
public:
    /// `phone` must outlive the object.
    explicit PhoneFiles(const Phone& phone) : m_phone(phone) {}

    /// Sets the end of the text of those failures: "nothing was written".
    void SetAftermath(const std::string& aftermath) { m_aftermath = aftermath; }

    /// Reads the status of what a path leads to: links are followed.
    Outcome Stat(const std::string& path, PhoneEntry& entry);
    /// Targets that are longer may have been cut.
    static constexpr size_t kLongestTarget = Diag_FTM::kEfs2TextSize - 2;
    /// Reads the target of a link; the phone refuses it for anything else.
    Outcome LinkTarget(const std::string& path, std::string& target);
    /// Lists a folder. Entries are as they are themselves: links are not followed.
    Outcome List(const std::string& folder, std::vector<PhoneEntry>& entries);

    /// Receives a block of a file; false ends the reading.
    using Sink = std::function<bool(std::span<const unsigned char>)>;
    /// Reads a file from its beginning to its end. `size`: what the phone reported; it saves the request that
    /// would find the end.
    Outcome Read(const std::string& path, uint32_t size, const Sink& sink);

    /// Fills the area with the next bytes of a file and returns their number; 0 at the end.
    using Source = std::function<size_t(std::span<unsigned char>)>;
    /// Makes a file with the permissions and writes it. A file or link of that name is removed first, so use
    /// a name of your own. A file that is not complete stays; the caller removes it.
    Outcome Write(const std::string& path, uint32_t mode, const Source& source);

    Outcome MakeFolder(const std::string& path, uint32_t mode);
    Outcome MakeLink(const std::string& path, const std::string& target);
    /// Renames a file or link, which replaces a file or link of the new name.
    Outcome Rename(const std::string& from, const std::string& to);
    Outcome ChangeMode(const std::string& path, uint32_t mode);
    /// Removes a file or link, also after Ctrl-C. False when the phone did not do that, or no longer answers.
    bool Remove(const std::string& path);

private:
    class OpenFile;

    template <class Call>
    Outcome Ask(Call call);
    template <class Call>
    Outcome AskAnyway(Call call);
    void CloseFolder(DWORD directory);
    Outcome OpenNew(OpenFile& file, const std::string& path, uint32_t mode);

    const Phone& m_phone;
    std::string m_aftermath = "the command failed";
    bool m_isGone = false;
};

} // namespace tools::qdiag
