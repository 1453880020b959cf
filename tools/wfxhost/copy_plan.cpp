#include "wfxhost/copy_plan.h"

#include "common/interrupt.h"

namespace tools::wfxhost {

CopyOptions CopyOptionsOf(const Job& job) {
    return {job.Has("--force"), job.Has("--update"), job.Has("--dry-run"), job.Has("--json")};
}

CopyPlan::CopyPlan(Session& session, const Job& job, const char* target)
    : m_session(session), m_job(job), m_lookup(session), m_sources(job.arguments), m_target(target) {
    if (m_sources.size() > 1) {
        m_target = m_sources.back();
        m_sources.pop_back();
    }
}

void CopyPlan::RecordNoMatch(const std::string& reason) {
    if (m_sources.size() == 1)
        throw Failure(reason);
    m_tree.failures.push_back(reason);
}

bool CopyPlan::MustStop(const Failure& failure) {
    return failure.ExitStatus() != Status::Failed || Interrupted() || !m_session.Answers();
}

} // namespace tools::wfxhost
