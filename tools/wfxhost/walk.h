// Walking a folder of the phone and all folders below it.
#pragma once

#include <string>

#include "wfxhost/session.h"

namespace tools::wfxhost {

/// Folders deeper than this below the start of a walk are not entered: some phones and plug-ins list folders
/// endlessly.
constexpr int kDeepest = 100;

/// Visitor receives what a walk finds. Depth 0 is the start of the walk.
class Visitor {
public:
    virtual ~Visitor() = default;
    /// A folder, before its content. Returns false to skip it; otherwise `Leave` follows.
    virtual bool Enter(const PhonePath& path, const Entry& entry, int depth) = 0;
    virtual void Leave(const PhonePath&, int /*depth*/) {}
    /// Any other entry, including links to folders.
    virtual void File(const PhonePath& path, const Entry& entry, int depth) = 0;
    /// A folder without entries. `reason` is the plug-in's, if the phone refused to list it.
    virtual void Empty(const PhonePath& path, const std::string& reason) = 0;
    /// An entry that the walk had to skip.
    virtual void LeftOut(const std::string& reason) = 0;
};

/// Walks in the order of the phone's listings. Throws Failure after Ctrl-C (under an InterruptGuard) and when
/// the handset stops answering. `undone` says what was therefore not done: "nothing was copied".
void WalkPhone(Session& session, const PhonePath& path, const Entry& entry, Visitor& visitor,
               const char* undone);

} // namespace tools::wfxhost
