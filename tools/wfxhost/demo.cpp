#include "wfxhost/demo.h"

#include <cstdio>
#include <deque>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <vector>

#include "common/interrupt.h"
#include "common/text.h"
#include "wfxhost/copy_job.h"
#include "wfxhost/remove.h"
#include "wfxhost/system.h"
#include "wfxhost/temporary.h"

namespace tools::wfxhost {
namespace {

namespace fs = std::filesystem;

constexpr uint64_t kLargeEnough = 100'000; // a file of this size shows the progress
constexpr uint64_t kNotTooLarge = 2'000'000;
constexpr int kFoldersLookedAt = 40;
constexpr size_t kUploadSize = 250'000;

void Say(const std::string& text) {
    std::printf("%s\n", text.c_str());
    std::fflush(stdout);
}

void RemoveFile(Session& session, const PhonePath& path) {
    Problems problems("not deleted", true);
    Removal removal(session);
    removal.Add({path, {}}, false);
    removal.Run(problems, "; please delete it yourself");
}

void CopyBack(Session& session, const Found& found, const fs::path& local) {
    Tree tree;
    tree.Add({found.path, local, found.entry});
    CopyFromPhone(session, tree, {});
}

/// Deletes the demonstration's file on the phone if the demonstration ends before it did so itself.
class PhoneFileGuard {
public:
    PhoneFileGuard(Session& session, PhonePath path) : m_session(session), m_path(std::move(path)) {}
    ~PhoneFileGuard() {
        try {
            if (m_armed)
                RemoveFile(m_session, m_path);
        } catch (const std::exception& failure) {
            Say(std::string(failure.what()) + "; please check the phone yourself");
        }
    }
    PhoneFileGuard(const PhoneFileGuard&) = delete;
    PhoneFileGuard& operator=(const PhoneFileGuard&) = delete;
    void Disarm() { m_armed = false; }

private:
    Session& m_session;
    PhonePath m_path;
    bool m_armed = true;
};

void StopIfInterrupted() {
    if (Interrupted())
        throw Failure("interrupted");
}

std::vector<Entry> Show(Session& session, const PhonePath& folder) {
    StopIfInterrupted();
    std::vector<Entry> entries;
    if (session.List(folder, entries) == Session::ListResult::NoResponse)
        throw Failure("the handset stopped answering");
    Say("\nThe folder " + folder.Text() + " of the handset:");
    PrintEntries(entries, {});
    if (entries.empty())
        Say("(empty)");
    return entries;
}

/// Searches the folders nearest to the root for a file that is large enough to show the progress. If there is
/// none, returns the largest acceptable one.
std::optional<Found> FileToCopy(Session& session, PhonePath& folderToShow) {
    std::optional<Found> best;
    std::deque<PhonePath> folders = {PhonePath()};
    for (int looked = 0; !folders.empty() && looked < kFoldersLookedAt; ++looked) {
        StopIfInterrupted();
        const PhonePath folder = folders.front();
        folders.pop_front();
        std::vector<Entry> entries;
        session.List(folder, entries);
        if (folderToShow.IsRoot() && !entries.empty())
            folderToShow = folder;
        for (const Entry& entry : entries) {
            if (entry.isFolder)
                folders.push_back(folder.Child(entry.name));
            else if (entry.size <= kNotTooLarge && (!best || entry.size > best->entry.size))
                best = Found{folder.Child(entry.name), entry};
        }
        if (best && best->entry.size >= kLargeEnough)
            break;
    }
    if (best && !best->path.Folder().IsRoot())
        folderToShow = best->path.Folder();
    return best;
}

/// Random content with every byte value at every alignment, so that a byte that some layer changes is
/// noticed.
std::string UploadContent() {
    std::string content(kUploadSize, '\0');
    uint32_t state = std::random_device()();
    for (char& byte : content) {
        state = state * 1664525 + 1013904223;
        byte = static_cast<char>(state >> 24);
    }
    return content;
}

std::string Content(const fs::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

void CopyOneThere(Session& session, const TemporaryFolder& local) {
    const PhonePath path = PhonePath().Child(FreshName("quillet-demo-", ".bin"));
    if (session.Find(path))
        throw Failure(Quoted(path.Text()) + " exists already");
    const std::string content = UploadContent();
    std::ofstream(local.File("upload"), std::ios::binary) << content;
    if (Content(local.File("upload")) != content)
        throw Failure("cannot write temporary files");

    Say("\nCopying a file of " + std::to_string(content.size()) + " bytes to the handset, as " + path.Text() +
        ":");
    // Armed before the copy: an interrupted copy may leave a file, which is ours because the name is new.
    PhoneFileGuard guard(session, path);
    Tree tree;
    Entry file;
    file.size = content.size();
    tree.Add({path, local.File("upload"), file});
    CopyToPhone(session, tree, {});
    Show(session, PhonePath());
    Say("\nReading it back:");
    const std::optional<Entry> entry = WithoutNoHandsetStatus([&] { return session.Find(path); });
    if (!entry)
        throw Failure("the copied file is not in the listing");
    CopyBack(session, {path, *entry}, local.File("back"));
    if (Content(local.File("back")) != content)
        throw Failure("the file that was read back differs from the one that was copied to the handset");
    Say("Compared: all " + std::to_string(content.size()) + " bytes are the same.");
    guard.Disarm();
    RemoveFile(session, path);
    Say("Deleted " + path.Text() + " from the handset again.");
}

std::unique_ptr<SimulatedHandset> AttachSimulated(Session& session, const TemporaryFolder& local) {
    const Failure none = session.NoHandset();
    Say(std::string("No attached handset can be used: ") + none.what());
    const std::string root = local.File("devices").string();
    fs::create_directory(local.File("devices"));
    std::string reason;
    std::unique_ptr<SimulatedHandset> handset = StartSimulatedHandset(root, reason);
    if (!handset)
        throw Failure(std::string(none.what()) + " (and no simulated one can be started: " + reason + ")",
                      Status::NoHandset);
    Say("Started a SIMULATED handset instead; everything below happens on it.");
    if (!session.Answers())
        throw Failure("the simulated handset does not answer", Status::NoHandset);
    return handset;
}

} // namespace

void Demonstrate(Session& session) {
    const InterruptGuard interrupt;
    const TemporaryFolder local;
    std::unique_ptr<SimulatedHandset> simulated;
    if (session.Answers())
        Say("Using the attached handset, from which files are only read.");
    else
        simulated = AttachSimulated(session, local);

    Show(session, PhonePath());
    PhonePath folder;
    const std::optional<Found> found = FileToCopy(session, folder);
    if (!folder.IsRoot())
        Show(session, folder);
    if (found) {
        Say("\nCopying " + Printable(found->path.Text()) + " (" + std::to_string(found->entry.size) +
            " bytes) from the handset:");
        CopyBack(session, *found, local.File("download"));
    } else {
        Say("\nThe handset has no file that could be copied from it.");
    }
    if (simulated)
        CopyOneThere(session, local);
    Say(simulated
            ? "\nEverything worked. Nothing was left behind on the simulated handset or on this computer."
            : "\nEverything worked. Nothing was written to the handset, and nothing was left behind on this "
              "computer.");
}

} // namespace tools::wfxhost
