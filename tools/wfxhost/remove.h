// The removal of entries of the phone, with a look at what became of them.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "wfxhost/problems.h"
#include "wfxhost/sources.h"

namespace tools::wfxhost {

/// Removal deletes entries. A plug-in's result only says that the phone answered, so what is gone is seen in
/// the listings afterwards.
class Removal {
public:
    explicit Removal(Session& session) : m_session(session) {}

    /// Add plans the removal of one entry, `withContent` with all that it holds. An entry that is planned
    /// already is left out. Throws Failure when what a folder holds cannot be found out.
    void Add(const Found& found, bool withContent);

    /// All that is planned, by path: folders come before what they hold.
    const std::map<std::string, Found>& Planned() const { return m_planned; }

    /// Run removes all that is planned. What is still there goes to `problems`, with `ifRefused` after the
    /// reason where the plug-in sent none. Throws Failure when nothing shows what became of the entries.
    void Run(Problems& problems, const char* ifRefused);

private:
    struct Folder {
        bool holdsOthers = false; // besides what was added
        std::vector<Found> added;
    };

    void LookAround();
    void RemoveAll();
    void Verify(const std::string& path, const Folder& folder, Problems& problems, const char* ifRefused);
    void ReportLeft(const Found& found, Problems& problems, const char* ifRefused);

    Session& m_session;
    std::map<std::string, Found> m_planned;       // by path
    std::map<std::string, Folder> m_folders;      // those in which the added entries are
    std::map<std::string, std::string> m_reasons; // the plug-in's, by path
    std::string m_stop;                           // why it ended early
};

} // namespace tools::wfxhost
