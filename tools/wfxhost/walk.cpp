#include "wfxhost/walk.h"

#include <vector>

#include "common/interrupt.h"
#include "common/text.h"

namespace tools::wfxhost {
namespace {

class Walker {
public:
    Walker(Session& session, Visitor& visitor, const char* undone)
        : m_session(session), m_visitor(visitor), m_undone(undone) {}

    void Visit(const PhonePath& path, const Entry& entry, int depth) {
        if (!entry.isFolder)
            m_visitor.File(path, entry, depth);
        else if (depth > kDeepest)
            m_visitor.LeftOut(Quoted(path.Text()) + ": its folders are nested too deep");
        else if (!path.IsRepresentable())
            m_visitor.LeftOut(UnrepresentableReason(path));
        else if (m_visitor.Enter(path, entry, depth))
            Folder(path, depth);
    }

private:
    void Folder(const PhonePath& path, int depth) {
        if (Interrupted())
            throw Failure(std::string("interrupted: ") + m_undone);
        const std::vector<Entry> entries = EntriesOf(path);
        for (const Entry& entry : entries) {
            // An empty name, or one that is a path, would lead to another entry.
            if (entry.name.empty() || entry.name.find('/') != std::string::npos)
                m_visitor.LeftOut(Quoted(path.Text()) + ": " + Quoted(entry.name) + " is not a valid name");
            else
                Visit(path.Child(entry.name), entry, depth + 1);
        }
        m_visitor.Leave(path, depth);
    }

    std::vector<Entry> EntriesOf(const PhonePath& path) {
        std::vector<Entry> entries;
        {
            Session::Walk walk(m_session, path);
            for (Entry entry; walk.Next(entry);)
                entries.push_back(entry);
        }
        if (!entries.empty())
            return entries;
        const std::string reason = m_session.TakeReason();
        if (!m_session.Answers()) // an interrupted listing looks empty, too
            throw Failure(std::string("the handset stopped answering: ") + m_undone);
        m_visitor.Empty(path, reason);
        return entries;
    }

    Session& m_session;
    Visitor& m_visitor;
    const char* const m_undone;
};

} // namespace

void WalkPhone(Session& session, const PhonePath& path, const Entry& entry, Visitor& visitor,
               const char* undone) {
    Walker(session, visitor, undone).Visit(path, entry, 0);
}

} // namespace tools::wfxhost
