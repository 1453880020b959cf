// The commands ln, cd and props: what a user types or asks for inside the phone's folders.
#include <cstdio>

#include "common/text.h"
#include "wfxhost/commands.h"

namespace tools::wfxhost {
namespace {

const std::string kLinkEnding = ".lnk";

/// A path for the plug-in's command line, which stands in the root folder: without the leading '/'.
std::string Argument(const std::string& path) {
    if (path.find('"') != std::string::npos)
        throw Failure("the plug-in's commands take no path with a double quote: " + Quoted(path));
    return path.substr(1);
}

} // namespace

void LinkCommand(Session& session, const Job& job) {
    const PhonePath target(job.arguments[0]);
    std::string name = PhonePath(job.arguments[1]).Text();
    // The plug-in appends the ending.
    if (name.ends_with(kLinkEnding))
        name.resize(name.size() - kLinkEnding.size());
    const PhonePath link(name + kLinkEnding);
    RequireTargetFolder(session, link);
    Existing(session, target);
    if (session.Find(link))
        throw Failure(Quoted(link.Text()) + " exists already");
    std::string unused;
    const int result =
        session.TypedCommand("ln \"" + Argument(target.Text()) + "\" \"" + Argument(name) + "\"", unused);
    // The phone's refusal does not show in the result; the listing tells whether the link is there.
    if (result == FS_EXEC_OK && AfterTheBeginning([&] { return session.Find(link); }))
        return;
    RequireAnswer(session, "making the link");
    throw Failure("the phone did not make the link " + Quoted(link.Text()));
}

void ChangeFolderCommand(Session& session, const Job& job) {
    const PhonePath path(job.arguments[0]);
    if (!session.Answers())
        throw session.NoHandset();
    std::string newPath;
    if (session.TypedCommand("cd " + Argument(path.Text()), newPath) != FS_EXEC_SYMLINK) {
        RequireAnswer(session, "changing the folder");
        throw Failure("the phone has no folder " + Quoted(path.Text()));
    }
    std::printf("%s\n", Printable(newPath).c_str());
}

void PropertiesCommand(Session& session, const Job& job) {
    const PhonePath path(job.arguments[0]);
    Existing(session, path);
    const std::string text = session.ShowProperties(path);
    RequireAnswer(session, "asking for the properties");
    // Control characters of names would reach the terminal; the text's own tabs and line feeds may.
    std::string line;
    for (const char c : text + "\n") {
        if (c != '\n' && c != '\t') {
            line += c;
            continue;
        }
        std::printf("%s%c", Printable(line).c_str(), c);
        line.clear();
    }
}

} // namespace tools::wfxhost
