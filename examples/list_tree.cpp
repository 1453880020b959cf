// Lists the phone's files. Folders end with a slash, files have their size, links their target.
//
//     $ list_tree 1
//     /brew/
//     /brew/mif/
//     /brew/mif/sample.mif  29 bytes
//     /brew/mod/
//     /brew/mod/sample/
//     /brew/mod/sample/sample.cfg  23 bytes
//     /nvm/
//     /nvm/num/
//     /nvm/num/0  4 bytes
//     /nvm/num/71  32 bytes
//     /shared/
//     /shared/notes.txt  41 bytes
//     /shared/pictures/
//     /shared/pictures/photo1.jpg  307200 bytes
//     /shared/empty/
//     /pictures -> shared/pictures
//     /readme.txt  48 bytes
//
//     $ list_tree 1 shared/notes.txt
//     shared/notes.txt: the phone refused it: not a folder (20)
//     [exit status 1]
#include <quillet.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

namespace {

struct Entry {
    std::string path;
    int kind; // 0 folder, 1 file, 2 link
    DWORD size;
};

/// Runs once for each entry of a folder, when the whole folder has been read.
unsigned char Collect(char* const path, unsigned char kind, unsigned short, unsigned char, unsigned char,
                      DWORD, DWORD size, void* entries) {
    static_cast<std::vector<Entry>*>(entries)->push_back({path, kind, size});
    return 0;
}

void ShowLink(Diag_FTM& phone, const std::string& path) {
    char target[Efs2Metadata::kEfs2TextSize];
    DWORD error = 0;
    if (!phone.EFS2_DIAG_LINK_TARGET(path.c_str(), target, error) || error != 0)
        std::printf("%s -> ?\n", path.c_str());
    else
        std::printf("%s -> %s\n", path.c_str(), target);
}

bool List(Diag_FTM& phone, const std::string& folder) {
    std::vector<Entry> entries;
    phone.ConfigureEfsCallbacks(&entries, nullptr, Collect);
    if (!phone.EFS2_DIAG_ENUM_DIR(folder.c_str())) {
        const std::string reason = EFS2_FailureText(phone.EFS2_LastFailure());
        std::fprintf(stderr, "%s: %s\n", folder.c_str(), reason.c_str());
        return false;
    }
    bool isComplete = true;
    for (const Entry& entry : entries) {
        if (entry.kind == 2) {
            ShowLink(phone, entry.path);
        } else if (entry.kind == 1) {
            std::printf("%s  %u bytes\n", entry.path.c_str(), static_cast<unsigned>(entry.size));
        } else {
            std::printf("%s/\n", entry.path.c_str());
            isComplete = List(phone, entry.path) && isComplete;
        }
    }
    return isComplete;
}

} // namespace

int main(int count, char** words) {
    const int port = count > 1 ? std::atoi(words[1]) : 0;
    if (port <= 0 || count > 3) {
        std::fprintf(stderr, "usage: list_tree PORT [FOLDER]\n");
        return 2;
    }
    Diag_FTM phone(port);
    phone.ConfigureTimeOut(QMSL_TimeOut_PhoneCheck, 1000); // a busy phone needs more than the usual 80 ms
    if (!phone.IsPhoneConnected()) {
        std::fprintf(stderr, "%s\n", PortErrorText(phone.GetPortError(), "the port").c_str());
        return 1;
    }
    return List(phone, count == 3 ? words[2] : "") ? 0 : 1;
}
