// Copies files into and out of the simulated file system.
#include "handset/fill.h"

#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>

#include "handset/file_system.h"

namespace handset {
namespace {

namespace fs = std::filesystem;

std::string Problem(const std::string& path, Errnum errnum) {
    return errnum == Errnum::None ? ""
                                  : path + ": error number " + std::to_string(static_cast<uint32_t>(errnum));
}

bool ReadLocal(const fs::path& path, Bytes& content) {
    std::ifstream file(path, std::ios::binary);
    content.assign(std::istreambuf_iterator<char>(file), {});
    return file.is_open() && !file.bad();
}

std::string FillFile(FileSystem& files, const fs::path& local, const std::string& path) {
    struct stat status {};
    Bytes content;
    if (stat(local.c_str(), &status) != 0 || !ReadLocal(local, content))
        return local.string() + ": cannot be read";
    const Times times = {static_cast<uint32_t>(status.st_atime), static_cast<uint32_t>(status.st_mtime),
                         static_cast<uint32_t>(status.st_ctime)};
    return Problem(path, files.AddFile(path, content, status.st_mode & 07777, times));
}

std::string FillFolder(FileSystem& files, const fs::path& local, const std::string& path);

std::string FillEntry(FileSystem& files, const fs::directory_entry& entry, const std::string& path) {
    if (entry.is_symlink())
        return Problem(path, files.AddLink(path, fs::read_symlink(entry.path()).string()));
    if (entry.is_directory()) {
        const Errnum errnum = files.AddFolder(path);
        return errnum == Errnum::None ? FillFolder(files, entry.path(), path) : Problem(path, errnum);
    }
    return entry.is_regular_file() ? FillFile(files, entry.path(), path) : "";
}

std::string FillFolder(FileSystem& files, const fs::path& local, const std::string& path) {
    const std::set<fs::directory_entry> entries(fs::directory_iterator(local), {});
    for (const fs::directory_entry& entry : entries) {
        std::string problem = FillEntry(files, entry, path + "/" + entry.path().filename().string());
        if (!problem.empty())
            return problem;
    }
    return "";
}

void ExportFile(const FileSystem& files, const std::string& path, const fs::path& local) {
    std::ofstream file(local, std::ios::binary);
    file.exceptions(std::ios::failbit | std::ios::badbit);
    const Bytes content = files.Content(path).value_or(Bytes());
    file.write(reinterpret_cast<const char*>(content.data()), static_cast<std::streamsize>(content.size()));
    file.close();
}

void ExportEntry(const FileSystem& files, const Listed& entry, const fs::path& local) {
    std::string target;
    if (entry.kind == Kind::Folder)
        fs::create_directory(local);
    else if (entry.kind == Kind::Link && files.ReadLink(entry.path, target) == Errnum::None)
        fs::create_symlink(target, local);
    else
        ExportFile(files, entry.path, local);
}

} // namespace

std::string FillFromFolder(FileSystem& files, const std::string& localFolder) {
    try {
        return FillFolder(files, localFolder, "");
    } catch (const fs::filesystem_error& error) {
        return error.what();
    }
}

unsigned char SampleByte(unsigned at) {
    return static_cast<unsigned char>((at * 31 + at / 251) & 0xFF);
}

void FillWithSample(FileSystem& files) {
    constexpr unsigned kPictureSize = 307200;
    Bytes picture(kPictureSize);
    for (unsigned at = 0; at < kPictureSize; ++at)
        picture[at] = SampleByte(at);
    files.AddFile("brew/mif/sample.mif", "MIF1 name=sample version=1.0\n");
    files.AddFile("brew/mod/sample/sample.cfg", "volume=5\r\nringer=loud\r\n");
    files.AddFile("nvm/num/0", Bytes{0x01, 0x00, 0x00, 0x00});
    files.AddFile("nvm/num/71", Bytes(32, 0x20));
    files.AddFile("shared/notes.txt", "Call back on Monday.\nBuy a longer cable.\n");
    files.AddFile("shared/pictures/photo1.jpg", picture);
    files.AddFolder("shared/empty");
    files.AddLink("pictures", "shared/pictures");
    files.AddFile("readme.txt", "This is the file system of a simulated handset.\n");
}

std::string Export(const FileSystem& files, const std::string& path, const std::string& localPath) {
    try {
        Status status;
        const Errnum errnum = files.Stat(path, status);
        if (errnum != Errnum::None)
            return Problem(path, errnum);
        if (files.Content(path)) {
            ExportFile(files, path, localPath);
            return "";
        }
        fs::create_directories(localPath);
        const std::vector<Listed> entries = files.List(path);
        const size_t cut = entries.empty() ? 0 : entries.front().path.rfind('/') + 1;
        for (const Listed& entry : entries)
            ExportEntry(files, entry, fs::path(localPath) / entry.path.substr(cut));
        return "";
    } catch (const std::exception& error) {
        return error.what();
    }
}

} // namespace handset
