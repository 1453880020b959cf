#include "mount/works.h"

#include <algorithm>
#include <array>
#include <cerrno>

namespace tools::mount {
namespace {

// A listing is valid for a moment. A long one, whose first entries are old when it ends, is valid for as long
// as it took.
constexpr auto kShortestValidity = std::chrono::seconds(1);
constexpr auto kLongestValidity = std::chrono::seconds(10);

/// Takes the mode of a listed entry. Returns false when its kind and the phone's mode bits contradict each
/// other.
bool TakeMode(const Efs2DirEntry& listed, Attributes& attributes) {
    const mode_t kind = listed.iType == EFS2_ENTRY_FILE        ? S_IFREG
                        : listed.iType == EFS2_ENTRY_DIRECTORY ? S_IFDIR
                        : listed.iType == EFS2_ENTRY_LINK      ? S_IFLNK
                                                               : 0;
    const mode_t said = listed.iMode & S_IFMT;
    attributes.mode = kind | (listed.iMode & 07777);
    return kind != 0 && (said == 0 || said == kind);
}

/// False for "." and "..", which the system adds itself, and for names that no folder of this computer can
/// contain.
bool IsShown(const Efs2DirEntry& listed, const std::string& name) {
    return !listed.bNameIsCut && name != "." && name != ".." && !name.empty() &&
           name.find('/') == std::string::npos;
}

} // namespace

// --- Reading and writing -------------------------------------------------------------------------------

bool ReadWork::Step() {
    const auto rest = std::span(m_data).subspan(m_done);
    const size_t wanted = std::min<size_t>(rest.size(), Diag_FTM::kEfs2MostRead);
    if (wanted == 0)
        return true;
    const size_t read = m_phone.folder.Files().Read(*m_file, m_offset + m_done, rest.first(wanted));
    m_done += read;
    // The system reads whole pages. If the end of the file is known, no request is needed to find it.
    return read < wanted || m_done == m_data.size() || m_offset + m_done == m_file->reportedSize;
}

bool WriteWork::Step() {
    if (m_data.empty())
        return true;
    try {
        m_done += m_phone.folder.Files().Write(*m_file, m_offset + m_done, std::span(m_data).subspan(m_done));
    } catch (const PosixError&) {
        m_phone.folder.Changed(m_file->path);
        if (m_done == 0)
            throw;
        return true; // the next write fails for the same reason
    }
    if (m_done < m_data.size())
        return false;
    m_phone.folder.Changed(m_file->path);
    return true;
}

// --- Listing -------------------------------------------------------------------------------------------

void ListWork::Open() {
    m_begin = Clock::now();
    m_phone.session.Query([&](Diag_FTM& phone, DWORD& error) {
        return phone.EFS2_DIAG_OPENDIR(m_folder.c_str(), m_directory, error);
    });
    m_epoch = m_phone.session.Epoch();
    m_listing = std::make_shared<Listing>();
}

bool ListWork::TakeEntry() {
    Efs2DirEntry listed;
    m_phone.session.Order([&](Diag_FTM& phone, DWORD& error) {
        return phone.EFS2_DIAG_READDIR(m_directory, m_sequence, listed, error);
    });
    if (listed.sName[0] == '\0')
        return false;
    Entry entry;
    entry.name = listed.sName + (listed.sName[0] == '/' ? 1 : 0);
    entry.attributes = {0, listed.iSize, 1, listed.iAtime, listed.iMtime, listed.iCtime};
    entry.isSound = TakeMode(listed, entry.attributes);
    if (IsShown(listed, entry.name))
        m_listing->entries.push_back(std::move(entry));
    return true;
}

void ListWork::Close() {
    const DWORD directory = std::exchange(m_directory, 0);
    m_phone.session.Order(
        [&](Diag_FTM& phone, DWORD& error) { return phone.EFS2_DIAG_CLOSEDIR(directory, error); });
    const auto end = Clock::now();
    m_listing->validUntil =
        end + std::clamp<Clock::duration>(end - m_begin, kShortestValidity, kLongestValidity);
    m_listing->Sort();
    m_phone.folder.Listed(m_folder, m_listing);
}

bool ListWork::Step() {
    if (m_sequence == 0) {
        m_listing = std::const_pointer_cast<Listing>(m_phone.folder.KnownListing(m_folder));
        if (m_listing)
            return true;
        Open();
        m_sequence = 1;
        return false;
    }
    if (m_directory != 0 && m_epoch != m_phone.session.Epoch())
        throw PosixError{EIO};
    if (TakeEntry()) {
        ++m_sequence;
        return false;
    }
    Close();
    return true;
}

ListWork::~ListWork() {
    if (m_directory == 0)
        return;
    m_phone.thread.Post([phone = m_phone, directory = m_directory, epoch = m_epoch] {
        if (phone.session.Epoch() == epoch)
            phone.session.Order(
                [&](Diag_FTM& diag, DWORD& error) { return diag.EFS2_DIAG_CLOSEDIR(directory, error); });
        return true;
    });
}

} // namespace tools::mount
