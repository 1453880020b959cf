// quillet-mount: the files of a handset as a folder.
#include <fcntl.h>

#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "common/failure.h"
#include "common/program.h"
#include "mount/fuse.h"
#include "mount/mount_point.h"
#include "mount/operations.h"

namespace tools::mount {
namespace {

// So many calls can wait for a silent phone before others are blocked.
constexpr unsigned kMostThreads = 64;
constexpr unsigned long kMostPort = 255;
constexpr unsigned long kMostIdle_s = 86400;

constexpr const char* kHelp =
    "usage: quillet-mount [--port N] [-f] [-d] [-o OPTIONS] FOLDER\n"
    "\n"
    "Shows the files of the attached handset in FOLDER, an empty folder, until\n"
    "\"fusermount3 -u FOLDER\".\n"
    "\n"
    "  --port N        use the phone on port COM N (default: the first port on which one answers)\n"
    "  -f              stay in the foreground; Ctrl-C unmounts\n"
    "  -d              the same, and print the operations on the folder\n"
    "  -o ro           mount read-only\n"
    "  -o allow_other  give other users access, as the permission bits say\n"
    "  -o uid=N,gid=N  the owner and group of all files (default: yours)\n"
    "  -o umask=OCTAL  the permission bits to clear; all others are set, whatever the phone reports\n"
    "  -o idle=SECONDS how long the port stays open after the last use (default 30)\n"
    "  --help          print this help\n"
    "  --version       print the version\n"
    "\n"
    "Exit status: 0 mounted (in the foreground: unmounted), 1 it cannot be mounted, 2 wrong usage, 3 no\n"
    "handset answers.\n";

struct Options {
    char* port = nullptr;
    char* idle = nullptr;
    char* folder = nullptr;
};

/// Takes the folder from the command line. libfuse would treat a missing one as wrong usage.
int TakeFolder(void* options, const char* word, int key, fuse_args*) {
    constexpr int kKeep = 1;
    if (key != FUSE_OPT_KEY_NONOPT)
        return kKeep;
    char*& folder = static_cast<Options*>(options)->folder;
    const bool isSecond = folder != nullptr;
    if (!isSecond)
        folder = strdup(word);
    return isSecond ? -1 : 0;
}

constexpr fuse_opt kOptions[] = {
    {"--port %s", offsetof(Options, port), 0},
    {"--port=%s", offsetof(Options, port), 0},
    {"idle=%s", offsetof(Options, idle), 0},
    FUSE_OPT_END,
};

/// Frees what libfuse allocated.
struct Freeing {
    void operator()(void* memory) const { std::free(memory); }
};
using Text = std::unique_ptr<char, Freeing>;

struct FuseClosing {
    void operator()(fuse* object) const { fuse_destroy(object); }
};

struct Arguments {
    fuse_args args;
    ~Arguments() { fuse_opt_free_args(&args); }
};

/// Serves requests on several threads until the folder is unmounted or a signal ends the program.
int Loop(fuse* object) {
    fuse_loop_config* const settings = fuse_loop_cfg_create();
    fuse_loop_cfg_set_max_threads(settings, kMostThreads);
    const int result = fuse_loop_mt(object, settings);
    fuse_loop_cfg_destroy(settings);
    return result;
}

/// Checks that a phone answers, so that nothing is mounted without one. Closes the port again.
unsigned short FindHandset(unsigned short wanted) {
    PhoneSession session(wanted);
    session.RequireHandset();
    return session.Port();
}

using Fuse = std::unique_ptr<fuse, FuseClosing>;

/// Throws Failure (wrong usage) when libfuse does not know an option; libfuse has then printed which.
Fuse MakeFuse(const Arguments& arguments, const std::string& names, Mount& mount) {
    Arguments all{FUSE_ARGS_INIT(0, nullptr)};
    for (int i = 0; i < arguments.args.argc; ++i)
        fuse_opt_add_arg(&all.args, arguments.args.argv[i]);
    fuse_opt_add_arg(&all.args, names.c_str());
    Fuse object(fuse_new(&all.args, &Operations(), sizeof(fuse_operations), &mount));
    if (!object)
        throw Failure("see quillet-mount --help", Status::Usage);
    return object;
}

void Serve(Mount& mount, const Arguments& arguments, const fuse_cmdline_opts& command) {
    const std::string names = "-osubtype=quillet,default_permissions,fsname=COM" + std::to_string(mount.port);
    const Fuse object = MakeFuse(arguments, names, mount);
    if (fuse_mount(object.get(), mount.mountPoint.c_str()) != 0)
        throw Failure("the system refuses to mount it there");
    const bool isStarted = fuse_daemonize(command.foreground) == 0 &&
                           fuse_set_signal_handlers(fuse_get_session(object.get())) == 0;
    const int result = isStarted ? Loop(object.get()) : -1;
    fuse_remove_signal_handlers(fuse_get_session(object.get()));
    mount.End();
    fuse_unmount(object.get());
    if (result < 0)
        throw Failure("serving the mounted folder failed");
}

void Run(int count, char** words) {
    Arguments arguments{FUSE_ARGS_INIT(count, words)};
    Options options;
    fuse_cmdline_opts command{};
    const bool isUnderstood = fuse_opt_parse(&arguments.args, &options, kOptions, TakeFolder) == 0 &&
                              fuse_parse_cmdline(&arguments.args, &command) == 0;
    const Text port(options.port), idle(options.idle), folder(options.folder);
    if (!isUnderstood)
        throw Failure("see quillet-mount --help", Status::Usage);
    if (command.show_help || command.show_version) {
        std::printf("%s", command.show_help ? kHelp : "quillet-mount " QUILLET_VERSION "\n");
        return;
    }
    if (!folder)
        throw Failure("no folder; see quillet-mount --help", Status::Usage);
    const auto wanted = port ? static_cast<unsigned short>(ParseNumber(port.get(), kMostPort, "--port"))
                             : QLib_ResourceManager::kAnyPort;
    const unsigned long idle_s = idle ? ParseNumber(idle.get(), kMostIdle_s, "idle") : 30;

    Mount mount{};
    MakeFuse(arguments, "-odefault_permissions", mount); // reports errors in the command line first
    mount.mountPoint = RequireMountPoint(folder.get());
    mount.wantedPort = wanted;
    mount.port = FindHandset(wanted);
    mount.idle = std::chrono::seconds(idle_s);
    const MountedOnce once(mount.port);
    Serve(mount, arguments, command);
}

} // namespace
} // namespace tools::mount

int main(int count, char** words) {
    try {
        tools::mount::Run(count, words);
        return 0;
    } catch (const tools::Failure& failure) {
        std::fprintf(stderr, "quillet-mount: %s\n", failure.what());
        return static_cast<int>(failure.ExitStatus());
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "quillet-mount: %s\n", failure.what());
        return static_cast<int>(tools::Status::Failed);
    }
}
