// wfxhost: loads a file-system plug-in as a file manager does and drives it from the command line.
#include <filesystem>
#include <iterator>
#include <string>

#include "common/command_line.h"
#include "wfxhost/commands.h"
#include "wfxhost/demo.h"
#include "wfxhost/system.h"

namespace tools::wfxhost {
namespace {

/// The plug-in in this program's folder; if there is none, the one that was installed with the program.
std::string DefaultPlugin() {
    const std::string beside = ProgramFolder() + "/" + DefaultPluginName();
    const std::string installed = ProgramFolder() + "/" QUILLET_PLUGIN_FOLDER "/" + DefaultPluginName();
    std::error_code error;
    return !std::filesystem::exists(beside, error) && std::filesystem::exists(installed, error) ? installed
                                                                                                : beside;
}

template <void (*Work)(Session& session, const Job& job)>
void WithPlugin(const Job& job) {
    PluginFile plugin(job.Value("--plugin", DefaultPlugin()));
    Session session(plugin, job.Has("--verbose"));
    Work(session, job);
}

void ShowDemonstration(Session& session, const Job&) {
    Demonstrate(session);
}

constexpr Option kJson = {"--json", "", nullptr, "print the result as JSON"};
constexpr Option kForce = {"--force", "f", nullptr, "replace existing files"};
constexpr Option kUnits = {"--human-readable", "h", nullptr, "print sizes with units"};
constexpr Option kCopyTrees = {"--recursive", "rR", nullptr, "copy folders and their contents"};
constexpr Option kUpdate = {"--update", "u", nullptr,
                            "copy only files that are new, newer than the copy, or of another size"};
constexpr Option kDryRun = {"--dry-run", "n", nullptr, "print what would be done, and change nothing"};

const char* const kCopyDetails =
    "Existing folders are merged. What cannot be copied is named with the reason and skipped. Links to "
    "folders are named and not followed.";

const Command kCommands[] = {
    {.name = "ls",
     .arguments = "[PATH]",
     .purpose = "list a folder or file of the phone",
     .least = 0,
     .most = 1,
     .options = {kJson,
                 kUnits,
                 {"--names", "1", nullptr, "print only the names, one per line"},
                 {"--mark-folders", "p", nullptr, "with --names or --zero: print '/' after names of folders"},
                 {"--zero", "", nullptr, "print only the names, unescaped, each followed by a zero byte"},
                 {"--long", "l", nullptr, "print type, size, date (UTC) and name (the default)"},
                 {"--all", "a", nullptr, "no effect: all names are always listed"}},
     .run = WithPlugin<ListCommand>,
     .details = "The type is d for folders and - for files and links. The list is sorted by name.",
     .aliases = "dir getfolderlisting",
     .words = {Word::PhonePath}},
    {.name = "find",
     .arguments = "[PATH...]",
     .purpose = "print the paths of entries in folders that meet all conditions",
     .least = 0,
     .most = kAnyNumber,
     .options = {{"-name", "", "PATTERN", "the name matches"},
                 {"-iname", "", "PATTERN", "the same, but A to Z match a to z"},
                 {"-type", "", "f|d", "only files (f) or folders (d)", Word::Any, "f d"},
                 {"-size", "", "[+-]N[ckMG]",
                  "files of N units, rounded up; +N: more, -N: less. Units: c (bytes, the default), k, M, G"},
                 {"-maxdepth", "", "N", "descend at most N levels below the path"},
                 {"-print0", "", nullptr, "print paths unescaped, each followed by a zero byte"},
                 kJson},
     .run = WithPlugin<FindCommand>,
     .details = "Links are not followed.",
     .words = {Word::PhonePath}},
    {.name = "du",
     .arguments = "[PATH...]",
     .purpose = "print the total size of the files in folders",
     .least = 0,
     .most = kAnyNumber,
     .options = {{"--summarize", "s", nullptr, "print only one line for each path"},
                 {"--all", "a", nullptr, "also print a line for each file"},
                 kUnits,
                 {"--bytes", "b", nullptr, "print sizes in bytes (the default)"},
                 kJson},
     .run = WithPlugin<UsageCommand>,
     .details = "Links are not followed.",
     .words = {Word::PhonePath}},
    {.name = "cat",
     .arguments = "PHONE...",
     .purpose = "print files of the phone on standard output",
     .least = 1,
     .most = kAnyNumber,
     .options = {},
     .run = WithPlugin<PrintCommand>,
     .aliases = "type",
     .words = {Word::PhonePath}},
    {.name = "get",
     .arguments = "PHONE [LOCAL] | get PHONE... FOLDER",
     .purpose = "copy files from the phone; LOCAL - is standard output",
     .least = 1,
     .most = kAnyNumber,
     .options = {kCopyTrees, kForce, kUpdate, kDryRun, kJson},
     .run = WithPlugin<GetCommand>,
     .details = kCopyDetails,
     .aliases = "pull getfiles",
     .words = {Word::PhonePath, Word::LocalPath}},
    {.name = "put",
     .arguments = "LOCAL [PHONE] | put LOCAL... FOLDER",
     .purpose = "copy files to the phone; LOCAL - is standard input",
     .least = 1,
     .most = kAnyNumber,
     .options = {kCopyTrees, kForce, kUpdate, kDryRun, kJson},
     .run = WithPlugin<PutCommand>,
     .details = kCopyDetails,
     .aliases = "push",
     .words = {Word::LocalPath, Word::PhonePath}},
    {.name = "mkdir",
     .arguments = "PATH",
     .purpose = "make a folder",
     .least = 1,
     .most = 1,
     .options = {{"--parents", "p", nullptr,
                  "also make missing parent folders; an existing folder is not a failure"}},
     .run = WithPlugin<MakeFolderCommand>,
     .words = {Word::PhonePath}},
    {.name = "rmdir",
     .arguments = "PATH",
     .purpose = "remove an empty folder",
     .least = 1,
     .most = 1,
     .options = {},
     .run = WithPlugin<RemoveFolderCommand>,
     .aliases = "deletefolder",
     .words = {Word::PhonePath}},
    {.name = "rm",
     .arguments = "PATH...",
     .purpose = "delete files",
     .least = 1,
     .most = kAnyNumber,
     .options = {{"--recursive", "rR", nullptr,
                  "delete folders and their contents; a link is deleted, not its target"},
                 {"--force", "f", nullptr, "ignore paths that do not exist"},
                 kDryRun},
     .run = WithPlugin<RemoveCommand>,
     .details = "Nothing is deleted from a folder before all of its content is known.",
     .aliases = "del deletefiles",
     .words = {Word::PhonePath}},
    {.name = "mv",
     .arguments = "OLD NEW | mv OLD... FOLDER",
     .purpose = "rename or move files or folders",
     .least = 2,
     .most = kAnyNumber,
     .options = {kForce},
     .run = WithPlugin<MoveCommand>,
     .aliases = "ren move",
     .words = {Word::PhonePath}},
    {.name = "ln",
     .arguments = "TARGET NAME",
     .purpose = "make a link NAME.lnk to TARGET",
     .least = 2,
     .most = 2,
     .options = {{"--symbolic", "s", nullptr, "no effect: all links are symbolic"}},
     .run = WithPlugin<LinkCommand>,
     .words = {Word::PhonePath}},
    {.name = "cd",
     .arguments = "PATH",
     .purpose = "check that the phone has a folder and print its path",
     .least = 1,
     .most = 1,
     .options = {kJson},
     .run = WithPlugin<ChangeFolderCommand>,
     .words = {Word::PhonePath}},
    {.name = "props",
     .arguments = "PATH",
     .purpose = "show the properties of a file or folder",
     .least = 1,
     .most = 1,
     .options = {kJson},
     .run = WithPlugin<PropertiesCommand>,
     .aliases = "stat",
     .words = {Word::PhonePath}},
};

const Program kProgram = {
    .name = "wfxhost",
    .purpose = "load a file-system plug-in and drive it from the command line",
    .commands = {std::begin(kCommands), std::end(kCommands)},
    .options =
        {
            {"--plugin", "", "FILE",
             "the plug-in to load (default: quillet.wfx or quillet.wfx64 beside this program, or the "
             "installed one)",
             Word::LocalPath, "", true},
            {"--verbose", "v", nullptr, "print the plug-in's log lines on standard error"},
            {"--quiet", "q", nullptr, "print only results and failures: no progress, no notes"},
        },
    .remarks =
        "Without a command, a demonstration runs, on a simulated handset if no phone is attached.\n\n"
        "Paths on the phone are written with '/'. In the paths of ls, find, du, cat, get, put, rm and mv, "
        "names may be patterns: * matches any text, ? any character, [a-z] one of these characters, [!a-z] "
        "any other. Quote patterns for the phone, or the shell expands them. An entry with exactly the typed "
        "name is preferred.\n\n"
        "If the target of a copy or move is a folder, the source is put into it under its own name. When "
        "something fails, the rest is still done, and the exit status is 1. Ctrl-C stops a command cleanly, "
        "a second one at once.\n",
    .withoutCommand = WithPlugin<ShowDemonstration>,
    .lister = "ls --zero -p --",
};

} // namespace
} // namespace tools::wfxhost

int main(int count, char** words) {
    return tools::RunProgram(tools::wfxhost::kProgram, count, words);
}
