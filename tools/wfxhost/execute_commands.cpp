// The commands cd and props.
#include <cstdio>

#include "common/text.h"
#include "wfxhost/commands.h"
#include "wfxhost/quote.h"

namespace tools::wfxhost {
namespace {

/// Converts the lines "NAME:<tabs>VALUE" of a properties text to a JSON object. A line without a name belongs
/// to the value before it.
std::string PropertiesAsJson(const std::string& text) {
    std::string members;
    std::string name;
    std::string value;
    const auto add = [&] {
        if (!name.empty())
            members += (members.empty() ? "" : ", ") + JsonText(name) + ": " + JsonText(value);
    };
    for (const std::string& line : Lines(text)) {
        const size_t colon = line.find(":\t");
        if (colon == std::string::npos) {
            value += line.empty() ? "" : "\n" + line;
            continue;
        }
        add();
        name = line.substr(0, colon);
        value = line.substr(std::min(line.find_first_not_of('\t', colon + 1), line.size()));
    }
    add();
    return "{" + members + "}";
}

/// Prints a text with its tabs and line feeds. Other control characters come from names and are escaped.
void PrintText(const std::string& text) {
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

} // namespace

std::string QuoteArgument(const std::string& path) {
    if (path.find('"') != std::string::npos)
        throw Failure("the plug-in's commands accept no path with a double quote: " + Quoted(path));
    return path.substr(1);
}

void ChangeFolderCommand(Session& session, const Job& job) {
    const PhonePath path(job.arguments[0]);
    if (!session.Answers())
        throw session.NoHandset();
    std::string newPath;
    if (session.TypedCommand("cd " + QuoteArgument(path.Text()), newPath) != FS_EXEC_SYMLINK)
        Fail(session, "changing the folder", "the phone has no folder " + Quoted(path.Text()));
    if (job.Has("--json"))
        std::printf("{%s}\n", NameAsJson("path", newPath).c_str());
    else
        std::printf("%s\n", Printable(newPath).c_str());
}

void PropertiesCommand(Session& session, const Job& job) {
    const PhonePath path(job.arguments[0]);
    Existing(session, path);
    const std::string text = session.ShowProperties(path);
    if (!session.Answers())
        Fail(session, "asking for the properties", "");
    if (const std::string reason = session.TakeReason(); !reason.empty())
        throw Failure(reason);
    if (job.Has("--json"))
        std::printf("{%s, \"properties\": %s}\n", NameAsJson("path", path.Text()).c_str(),
                    PropertiesAsJson(text).c_str());
    else
        PrintText(text);
}

} // namespace tools::wfxhost
