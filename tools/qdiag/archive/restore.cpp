// The efs restore command: writes those entries of an archive to the phone that differ.
#include <unistd.h>

#include <algorithm>
#include <cstdio>

#include "common/interrupt.h"
#include "common/text.h"
#include "qdiag/archive/identity.h"
#include "qdiag/archive/restorer.h"
#include "qdiag/commands.h"
#include "qdiag/consent.h"
#include "qdiag/efs/phone_path.h"

namespace tools::qdiag {
namespace {

constexpr const char* kNothing = "nothing was written";

size_t CountImpossible(const Differences& differences) {
    return static_cast<size_t>(std::ranges::count_if(
        differences, [](const auto& pair) { return pair.second.remedy == Difference::Remedy::Impossible; }));
}

/// Says so when the archive is from another phone, or does not say from which.
void WarnOfOtherPhone(const Phone& phone, const Plan& plan) {
    if (plan.identity.empty()) {
        std::fprintf(stderr, "warning: the archive does not say which phone it is from\n");
        return;
    }
    const Identity from = ParseIdentity(plan.identity);
    const Identity here = IdentityOf(phone);
    if (!here.MayEqual(from))
        std::fprintf(stderr, "warning: the archive is from another phone: %s; this is %s\n",
                     from.Text().c_str(), here.Text().c_str());
}

void Show(const Differences& differences, size_t all) {
    for (const auto& [path, difference] : differences)
        std::printf("%s  %s%s\n", Printable(path).c_str(), difference.text.c_str(),
                    difference.remedy == Difference::Remedy::Impossible ? " (cannot be restored)" : "");
    std::printf("%zu of %zu entries differ\n", differences.size(), all);
}

void RequirePermission(const Job& job) {
    if (job.Has("--yes"))
        return;
    if (!isatty(STDIN_FILENO))
        throw Failure("not confirmed: nothing was written; --yes writes without asking");
    RequireConsent();
}

void Write(PhoneFiles& files, const Plan& plan, const Differences& differences) {
    const InterruptGuard guard;
    Restorer restorer(files, plan, differences);
    restorer.Run();
    const Differences wrong = Compare(files, plan, &restorer.Written(), kUnfinished, "reading back");
    for (const auto& [path, difference] : wrong)
        std::fprintf(stderr, "%s was written, but does NOT hold what the archive has: %s\n",
                     Quoted(path).c_str(), difference.text.c_str());
    const size_t failed = differences.size() - restorer.Written().size() + wrong.size();
    if (failed > 0)
        throw Failure(std::to_string(failed) + " of " + std::to_string(differences.size()) +
                      " entries were not restored");
    std::printf("restored and read back\n");
}

Differences FindDifferences(PhoneFiles& files, const Phone& phone, const Plan& plan) {
    const InterruptGuard guard;
    WarnOfOtherPhone(phone, plan);
    return Compare(files, plan, nullptr, kNothing, "comparing");
}

Plan ReadArchive(const std::string& file, const std::string& folder) {
    const InterruptGuard guard;
    UsePlainNames();
    Plan plan = MakePlan(file, folder);
    if (plan.entries.empty())
        throw Failure("the archive " + Quoted(file) + " has nothing " +
                      (folder == "/" ? "to restore" : "in " + Quoted(folder)));
    return plan;
}

} // namespace

void EfsRestoreCommand(const Job& job) {
    const std::string folder = job.arguments.size() < 2 ? "/" : ParsePhonePath(job.arguments[1]);
    const Plan plan = ReadArchive(job.arguments[0], folder);
    const Phone phone(job);
    PhoneFiles files(phone);
    const Differences differences = FindDifferences(files, phone, plan);
    if (differences.empty()) {
        std::printf("the phone holds all %zu entries of the archive already\n", plan.entries.size());
        return;
    }
    Show(differences, plan.entries.size());
    const size_t impossible = CountImpossible(differences);
    const bool isDone = job.Has("--dry-run") || impossible == differences.size();
    if (isDone && impossible > 0)
        throw Failure(std::to_string(impossible) + " of " + std::to_string(differences.size()) +
                      " entries cannot be restored: nothing was written");
    if (isDone)
        return;
    RequirePermission(job);
    Write(files, plan, differences);
}

} // namespace tools::qdiag
