// wfxhost: loads a file-system plug-in as a file manager does and drives it from the command line.
#include <iterator>

#include "common/command_line.h"
#include "wfxhost/commands.h"
#include "wfxhost/demo.h"
#include "wfxhost/system.h"

namespace tools::wfxhost {
namespace {

template <void (*Work)(Session& session, const Job& job)>
void WithPlugin(const Job& job) {
    PluginFile plugin(job.Value("--plugin", ProgramFolder() + "/" + DefaultPluginName()));
    Session session(plugin, job.Has("--verbose"));
    Work(session, job);
}

void ShowDemonstration(Session& session, const Job&) {
    Demonstrate(session);
}

constexpr Option kJson = {"--json", "", nullptr, "print the result as JSON"};
constexpr Option kForce = {"--force", "f", nullptr, "replace existing files"};
constexpr Option kUnits = {"--human-readable", "h", nullptr, "sizes with units"};
constexpr Option kCopyTrees = {"--recursive", "rR", nullptr, "folders with all in them"};
constexpr Option kUpdate = {"--update", "u", nullptr,
                            "only files that differ in size or are newer than the copy; these are replaced"};
constexpr Option kDryRun = {"--dry-run", "n", nullptr, "print what would be done, and change nothing"};

const char* const kCopyDetails =
    "Folders that are there already are filled up. What cannot be copied is named with its reason and left "
    "out, and "
    "the rest goes on. Links to folders are named and not followed.";

const Command kCommands[] = {
    {.name = "ls",
     .arguments = "[PATH]",
     .purpose = "list a folder (or a file) of the phone",
     .least = 0,
     .most = 1,
     .options = {kJson,
                 kUnits,
                 {"--names", "1", nullptr, "only the names, one per line"},
                 {"--mark-folders", "p", nullptr, "with only names: '/' after those of folders"},
                 {"--zero", "", nullptr, "only the names, as they are, a zero byte after each"},
                 {"--long", "l", nullptr, "type, size, date (UTC) and name; that is the default"},
                 {"--all", "a", nullptr, "changes nothing: no name is hidden"}},
     .run = WithPlugin<ListCommand>,
     .details = "Types are d for folders and - for files and links. The list is sorted by name.",
     .aliases = "dir getfolderlisting",
     .words = {Word::PhonePath}},
    {.name = "find",
     .arguments = "[PATH...]",
     .purpose = "print the paths of what is in folders and fits all conditions",
     .least = 0,
     .most = kAnyNumber,
     .options = {{"-name", "", "PATTERN", "names that fit"},
                 {"-iname", "", "PATTERN", "the same; A to Z equal a to z"},
                 {"-type", "", "f|d", "f: files, d: folders", Word::Any, "f d"},
                 {"-size", "", "[+-]N[ckMG]",
                  "files of N units, rounded up; + more, - less. Units: c bytes (the default), k, M, G"},
                 {"-maxdepth", "", "N", "at most N folders below the path"},
                 {"-print0", "", nullptr, "paths as they are, a zero byte after each"},
                 kJson},
     .run = WithPlugin<FindCommand>,
     .details = "Links are not followed.",
     .words = {Word::PhonePath}},
    {.name = "du",
     .arguments = "[PATH...]",
     .purpose = "print how many bytes the files in folders have",
     .least = 0,
     .most = kAnyNumber,
     .options = {{"--summarize", "s", nullptr, "only one line for each path"},
                 {"--all", "a", nullptr, "a line for each file too"},
                 kUnits,
                 {"--bytes", "b", nullptr, "sizes in bytes; that is the default"},
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
     .options = {{"--parents", "p", nullptr, "the missing folders above too; an existing one is no failure"}},
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
                  "folders with all in them; a link is deleted, not what it leads to"},
                 {"--force", "f", nullptr, "a path that means nothing is no failure"},
                 kDryRun},
     .run = WithPlugin<RemoveCommand>,
     .details = "Nothing is deleted from a folder before all that it holds is known.",
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
     .purpose = "make the link NAME.lnk that leads to TARGET",
     .least = 2,
     .most = 2,
     .options = {{"--symbolic", "s", nullptr, "changes nothing: there are no other links"}},
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
            {"--plugin", "", "FILE", "the plug-in to load (default: quillet.wfx, .wfx64 beside this program)",
             Word::LocalPath, "", true},
            {"--verbose", "v", nullptr, "print the plug-in's log lines on standard error"},
            {"--quiet", "q", nullptr, "print only results and failures: no progress, no notes"},
        },
    .remarks =
        "Without a command: a demonstration, on a simulated handset when none is attached.\n\n"
        "Paths on the phone are written with '/'. In the paths that ls, find, du, cat, get, put, rm and mv "
        "take, "
        "names may be patterns: * is any text, ? one character, [a-z] one of those, [!a-z] none of those. "
        "Quote "
        "patterns for the phone, or the shell reads them. An entry with just the typed name is preferred.\n\n"
        "A copy or move whose target is a folder goes into it under its own name. When something cannot be "
        "done, "
        "the rest is, and the exit status is 1. Ctrl-C stops a command in an orderly way, a second one at "
        "once.\n",
    .withoutCommand = WithPlugin<ShowDemonstration>,
    .lister = "ls --zero -p --",
};

} // namespace
} // namespace tools::wfxhost

int main(int count, char** words) {
    return tools::RunProgram(tools::wfxhost::kProgram, count, words);
}
