// What get and put share: sources, a target, and the tree to copy.
#pragma once

#include <string>
#include <vector>

#include "common/program.h"
#include "wfxhost/copy_job.h"
#include "wfxhost/sources.h"

namespace tools::wfxhost {

/// Returns the copy options of a get or put command.
CopyOptions CopyOptionsOf(const Job& job);

/// CopyPlan collects what a copy consists of. If there are several sources, one that cannot be copied becomes
/// a failure in the tree, and the rest is copied. The failure of a single source is thrown.
class CopyPlan {
protected:
    /// Splits the job's arguments. A single one is the source, and `target` the target; of several, the last
    /// one is the target.
    CopyPlan(Session& session, const Job& job, const char* target);

    /// Records that a source as typed matches nothing.
    void RecordNoMatch(const std::string& reason);

    /// Runs `add`, which adds one source to the tree. If `isOnly` is set, its failure is thrown.
    template <class Add>
    void TryAdd(bool isOnly, Add add) {
        try {
            add();
        } catch (const Failure& failure) {
            if (isOnly || MustStop(failure))
                throw;
            m_tree.failures.push_back(failure.what());
        }
    }

    Session& m_session;
    const Job& m_job;
    PhoneLookup m_lookup;
    std::vector<std::string> m_sources; // as typed
    std::string m_target;               // as typed
    Tree m_tree;

private:
    bool MustStop(const Failure& failure);
};

} // namespace tools::wfxhost
