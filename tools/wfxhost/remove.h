// Removing entries of the phone, and verifying that they are gone.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "wfxhost/problems.h"
#include "wfxhost/sources.h"

namespace tools::wfxhost {

/// Removal deletes entries. The result of a plug-in only shows that the phone answered, so listings are read
/// afterwards to see what is gone.
class Removal {
public:
    explicit Removal(Session& session) : m_session(session) {}

    /// Plans the removal of an entry, and of its content if `withContent` is set. An entry that is already
    /// planned is ignored. Throws Failure when a folder cannot be listed.
    void Add(const Found& found, bool withContent);

    /// The planned entries by path: a folder precedes its content.
    const std::map<std::string, Found>& Planned() const { return m_planned; }

    /// Removes the planned entries. Each one that still exists is added to `problems`, with `ifRefused` after
    /// the reason if the plug-in sent none. Throws Failure when it cannot be determined which entries are
    /// gone.
    void Run(Problems& problems, const char* ifRefused);

private:
    struct Folder {
        bool holdsOthers = false; // besides the added entries
        std::vector<Found> added;
    };

    void CheckFolders();
    void RemoveAll();
    void Verify(const std::string& path, const Folder& folder, Problems& problems, const char* ifRefused);
    void ReportRemaining(const Found& found, Problems& problems, const char* ifRefused);

    Session& m_session;
    std::map<std::string, Found> m_planned;       // by path
    std::map<std::string, Folder> m_folders;      // that contain the added entries
    std::map<std::string, std::string> m_reasons; // the plug-in's, by path
    std::string m_stop;                           // why the removal ended early
};

} // namespace tools::wfxhost
