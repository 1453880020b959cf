// What get and put have in common: sources, a target, and the tree to copy.
#pragma once

#include <string>
#include <vector>

#include "common/program.h"
#include "wfxhost/copy_job.h"
#include "wfxhost/sources.h"

namespace tools::wfxhost {

/// CopyOptionsOf returns the options of get and put.
CopyOptions CopyOptionsOf(const Job& job);

/// CopyPlan holds a copy while it is put together. Of several sources, one that cannot be copied becomes a
/// failure in the tree, and the rest is copied; the failure of an only one is thrown.
class CopyPlan {
protected:
    /// Splits the job's arguments: an only one is a source, else the last one is the target, which is
    /// `target` otherwise.
    CopyPlan(Session& session, const Job& job, const char* target);

    /// Miss notes that a typed source means nothing.
    void Miss(const std::string& reason);

    /// TryAdd runs `add`, which adds one source to the tree. `isOnly`: its failure is thrown.
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
