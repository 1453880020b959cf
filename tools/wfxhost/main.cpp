// wfxhost: loads a file-system plug-in as a file manager does and drives it from the command line.
#include "wfxhost/commands.h"
#include "wfxhost/demo.h"
#include "wfxhost/system.h"

namespace tools::wfxhost {
namespace {

template <void (*Work)(Session& session, const Job& job)>
void WithPlugin(const Job& job) {
    PluginFile plugin(job.Value("--plugin", ProgramFolder() + "/" + DefaultPluginName()));
    Session session(plugin);
    Work(session, job);
}

void ShowDemonstration(Session& session, const Job&) {
    Demonstrate(session);
}

const Program kProgram = {
    .name = "wfxhost",
    .commands =
        {
            {"ls",
             "[PATH]",
             "list a folder (or a file) of the phone",
             0,
             1,
             {"--json"},
             WithPlugin<ListCommand>},
            {"get",
             "PHONE [LOCAL]",
             "copy a file from the phone; with -r a folder and all in it",
             1,
             2,
             {"-r", "--force"},
             WithPlugin<GetCommand>},
            {"put",
             "LOCAL [PHONE]",
             "copy a file to the phone; with -r a folder and all in it",
             1,
             2,
             {"-r", "--force"},
             WithPlugin<PutCommand>},
            {"mkdir", "PATH", "make a folder", 1, 1, {}, WithPlugin<MakeFolderCommand>},
            {"rmdir", "PATH", "remove an empty folder", 1, 1, {}, WithPlugin<RemoveFolderCommand>},
            {"rm", "PATH", "delete a file", 1, 1, {}, WithPlugin<RemoveFileCommand>},
            {"mv", "OLD NEW", "rename or move a file or folder", 2, 2, {"--force"}, WithPlugin<MoveCommand>},
            {"ln",
             "TARGET NAME",
             "make the link NAME.lnk that leads to TARGET",
             2,
             2,
             {},
             WithPlugin<LinkCommand>},
            {"cd", "PATH", "check a folder and print its path", 1, 1, {}, WithPlugin<ChangeFolderCommand>},
            {"props",
             "PATH",
             "show the properties of a file or folder",
             1,
             1,
             {},
             WithPlugin<PropertiesCommand>},
        },
    .options =
        {
            {"--plugin", "FILE", "the plug-in to load (default: quillet.wfx, .wfx64 beside this program)",
             true},
            {"-r", nullptr, "get, put: folders with all that they hold"},
            {"--force", nullptr, "get, put, mv: replace existing files"},
            {"--json", nullptr, "ls: as a JSON array"},
        },
    .remarks =
        "Without a command: a demonstration, on a simulated handset when none is attached.\n"
        "Paths on the phone are written with '/'. A copy whose target is a folder goes into it under its "
        "own\n"
        "name. With -r, what cannot be copied is told and left out, and the exit status is 1; links to "
        "folders\n"
        "are told and not followed. Ctrl-C stops a copy in order, a second one at once.\n",
    .withoutCommand = WithPlugin<ShowDemonstration>,
};

} // namespace
} // namespace tools::wfxhost

int main(int count, char** words) {
    return tools::RunProgram(tools::wfxhost::kProgram, count, words);
}
