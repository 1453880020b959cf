// A walk through a folder of the phone and all that is below it.
#pragma once

#include <string>

#include "wfxhost/session.h"

namespace tools::wfxhost {

/// Folders deeper than this below the beginning of a walk are not entered: some phones and plug-ins show
/// folders that never end.
constexpr int kDeepest = 100;

/// What a walk finds. Depth 0 is where it begins.
class Visitor {
public:
    virtual ~Visitor() = default;
    /// A folder, before what it holds; false: it is not entered. `Leave` follows where it was entered.
    virtual bool Enter(const PhonePath& path, const Entry& entry, int depth) = 0;
    virtual void Leave(const PhonePath&, int /*depth*/) {}
    /// Anything else; links to folders are such, too.
    virtual void File(const PhonePath& path, const Entry& entry, int depth) = 0;
    /// A folder that has no entries; `reason` is the plug-in's, if the phone refused to list it.
    virtual void Empty(const PhonePath& path, const std::string& reason) = 0;
    /// Something that the walk had to leave out.
    virtual void LeftOut(const std::string& reason) = 0;
};

/// WalkPhone walks in the order of the phone's listings. Throws Failure after Ctrl-C (under an
/// InterruptGuard) and when the handset stops answering; `undone` says then what did not happen: "nothing was
/// copied".
void WalkPhone(Session& session, const PhonePath& path, const Entry& entry, Visitor& visitor,
               const char* undone);

} // namespace tools::wfxhost
