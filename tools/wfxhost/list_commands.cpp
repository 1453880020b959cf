// The commands that change nothing: ls, find and du.
#include <cstdio>

#include "common/interrupt.h"
#include "common/pattern.h"
#include "common/progress.h"
#include "common/text.h"
#include "wfxhost/commands.h"
#include "wfxhost/find_expression.h"
#include "wfxhost/problems.h"
#include "wfxhost/sources.h"
#include "wfxhost/system.h"
#include "wfxhost/walk.h"

namespace tools::wfxhost {
namespace {

constexpr const char* kUndone = "not everything was looked at";

void RequireOutput() {
    if (std::ferror(stdout))
        throw Failure(kOutputFailure);
}

/// Returns what ls shows for `path` when its listing is empty: the file with that name, the entries that
/// match it as a pattern, or nothing for an empty folder.
std::vector<Entry> EntriesInstead(Session& session, const PhonePath& path, const std::string& refusal) {
    PhoneLookup lookup(session);
    const std::vector<Found> found = lookup.Expand(path.Text());
    if (found.empty())
        throw Failure(NoMatchReason(path.Text(), "file or folder"));
    std::vector<Entry> entries;
    for (const Found& one : found) {
        entries.push_back(one.entry);
        if (found.size() > 1 || one.path.Text() != path.Text())
            entries.back().name = one.path.Text().substr(path.Folder().IsRoot() ? 1 : 0);
    }
    const bool isFolder = found.size() == 1 && found[0].path.Text() == path.Text() && found[0].entry.isFolder;
    if (isFolder && !refusal.empty())
        throw Failure(refusal);
    if (isFolder)
        entries.clear();
    return entries;
}

/// Walks the arguments of a command, or the root if there are none.
class LookingVisitor : public Visitor {
public:
    LookingVisitor() : m_problems("not read", false) {}

    void Run(Session& session, const Job& job) {
        const InterruptGuard guard;
        PhoneLookup lookup(session);
        std::vector<std::string> arguments = job.arguments;
        if (arguments.empty())
            arguments = {"/"};
        for (const std::string& typed : arguments) {
            const std::vector<Found> found = lookup.Expand(typed);
            if (found.empty())
                LeftOut(NoMatchReason(typed, "file or folder"));
            for (const Found& one : found)
                WithoutNoHandsetStatus([&] { WalkPhone(session, one.path, one.entry, *this, kUndone); });
        }
        m_problems.Finish(std::string(kUndone) + ", see above");
    }

    void Empty(const PhonePath&, const std::string& reason) override {
        if (!reason.empty())
            LeftOut(reason);
    }
    void LeftOut(const std::string& reason) override { m_problems.Add(reason); }

private:
    Problems m_problems;
};

class Finder : public LookingVisitor {
public:
    explicit Finder(const Job& job)
        : m_expression(job),
          m_deepest(static_cast<int>(job.Number("-maxdepth", kDeepest, kDeepest))),
          m_isJson(job.Has("--json")),
          m_end(job.Has("-print0") ? '\0' : '\n'),
          m_array(m_isJson) {
        if (m_end == '\0')
            MakeOutputBinary();
    }

    bool Enter(const PhonePath& path, const Entry& entry, int depth) override {
        File(path, entry, depth);
        return depth < m_deepest;
    }

    void File(const PhonePath& path, const Entry& entry, int) override {
        if (!m_expression.Matches(path.IsRoot() ? "/" : path.Name(), entry))
            return;
        if (m_isJson) {
            m_array.Add(EntryAsJson(entry, "path", path.Text()));
        } else {
            const std::string line = (m_end == '\0' ? path.Text() : Printable(path.Text())) + m_end;
            std::fwrite(line.data(), 1, line.size(), stdout);
        }
        RequireOutput();
    }

private:
    const FindExpression m_expression;
    const int m_deepest;
    const bool m_isJson;
    const char m_end;
    JsonArray m_array;
};

/// Adds up sizes, folder by folder.
class Counter : public LookingVisitor {
public:
    explicit Counter(const Job& job)
        : m_isTotalOnly(job.Has("--summarize")),
          m_isAll(job.Has("--all")),
          m_hasUnits(job.Has("--human-readable")),
          m_isJson(job.Has("--json")),
          m_array(m_isJson) {}

    bool Enter(const PhonePath&, const Entry&, int) override {
        m_sums.push_back({.folders = 1});
        return true;
    }

    void File(const PhonePath& path, const Entry& entry, int depth) override {
        const Sum sum = {.bytes = entry.size, .files = 1};
        if (!m_sums.empty())
            m_sums.back().Add(sum);
        if (depth == 0 || (m_isAll && !m_isTotalOnly))
            Print(path, sum);
    }

    void Leave(const PhonePath& path, int depth) override {
        const Sum sum = m_sums.back();
        m_sums.pop_back();
        if (!m_sums.empty())
            m_sums.back().Add(sum);
        if (depth == 0 || !m_isTotalOnly)
            Print(path, sum);
    }

private:
    struct Sum {
        uint64_t bytes = 0;
        size_t files = 0;
        size_t folders = 0;
        void Add(const Sum& other) {
            bytes += other.bytes;
            files += other.files;
            folders += other.folders;
        }
    };

    void Print(const PhonePath& path, const Sum& sum) {
        if (m_isJson)
            m_array.Add("{" + NameAsJson("path", path.Text()) + ", \"bytes\": " + std::to_string(sum.bytes) +
                        ", \"files\": " + std::to_string(sum.files) +
                        ", \"folders\": " + std::to_string(sum.folders) + "}");
        else
            std::printf(
                "%s\t%s\n",
                (m_hasUnits ? SizeText(static_cast<double>(sum.bytes)) : std::to_string(sum.bytes)).c_str(),
                Printable(path.Text()).c_str());
        RequireOutput();
    }

    const bool m_isTotalOnly;
    const bool m_isAll;
    const bool m_hasUnits;
    const bool m_isJson;
    JsonArray m_array;
    std::vector<Sum> m_sums; // of the folders that were entered and not left
};

} // namespace

void ListCommand(Session& session, const Job& job) {
    const PhonePath path(job.arguments.empty() ? "/" : job.arguments[0]);
    std::vector<Entry> entries;
    Session::ListResult result = session.List(path, entries, path.NamesFolder());
    if (result == Session::ListResult::Empty && path.IsRoot()) {
        session.TakeReason();
        result = session.List(path, entries); // is the root empty, or has the handset gone?
    }
    if (result == Session::ListResult::NoResponse)
        throw session.NoHandset();
    const std::string refusal = session.TakeReason();
    if (result == Session::ListResult::Empty)
        entries = EntriesInstead(session, path, refusal);
    PrintEntries(std::move(entries), {.isJson = job.Has("--json"),
                                      .hasSizeUnits = job.Has("--human-readable"),
                                      .isNamesOnly = job.Has("--names"),
                                      .isZeroed = job.Has("--zero"),
                                      .marksFolders = job.Has("--mark-folders")});
}

void FindCommand(Session& session, const Job& job) {
    Finder(job).Run(session, job);
}

void UsageCommand(Session& session, const Job& job) {
    Counter(job).Run(session, job);
}

} // namespace tools::wfxhost
