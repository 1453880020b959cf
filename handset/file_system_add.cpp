// Direct access to the simulated file system, without descriptors and permissions.
#include "handset/file_system_paths.h"

namespace handset {
namespace {

std::string FolderOf(const std::string& path) {
    const size_t last = path.find_last_not_of('/');
    const size_t slash = last == std::string::npos ? last : path.rfind('/', last);
    return slash == std::string::npos ? "" : path.substr(0, slash);
}

void ListFolder(const Node& folder, const std::string& path, std::vector<Listed>& listing) {
    for (const auto& [key, entry] : folder.entries) {
        const std::string entryPath = path + "/" + entry.name;
        listing.push_back({entryPath, entry.node->kind, entry.node->Size()});
        if (entry.node->kind == Kind::Folder)
            ListFolder(*entry.node, entryPath, listing);
    }
}

} // namespace

Errnum FileSystem::AddFolder(const std::string& path, uint32_t permissions) {
    NodePtr node;
    const Errnum found = FindNode(path, node);
    if (found == Errnum::None)
        return node->kind == Kind::Folder ? Errnum::None : Errnum::NotFolder;
    if (found != Errnum::NotFound || SplitPath(path).empty())
        return found;
    const Errnum above = AddFolder(FolderOf(path));
    return above == Errnum::None ? MakeFolder(path, permissions) : above;
}

Errnum FileSystem::AddFile(const std::string& path, const Bytes& content, uint32_t permissions,
                           std::optional<Times> times) {
    Errnum errnum = AddFolder(FolderOf(path));
    if (errnum != Errnum::None)
        return errnum;
    NodePtr node;
    if (FindNode(path, node) != Errnum::None || node->kind == Kind::Folder)
        errnum = CreateOrCheck(Find(path, true), kReadOnly | kCreate, permissions, node);
    if (errnum != Errnum::None)
        return errnum;
    if (!node->HoldBlocks(BlocksFor(content.size())))
        return Errnum::NoSpace;
    node->content = content;
    node->permissions = permissions & 07777;
    const uint32_t now = Now();
    node->times = times.value_or(Times{now, now, now});
    return Errnum::None;
}

Errnum FileSystem::AddFile(const std::string& path, const std::string& content) {
    return AddFile(path, Bytes(content.begin(), content.end()));
}

Errnum FileSystem::AddLink(const std::string& path, const std::string& target) {
    const Errnum above = AddFolder(FolderOf(path));
    return above == Errnum::None ? MakeLink(path, target) : above;
}

Errnum FileSystem::SetTimes(const std::string& path, const Times& times) {
    NodePtr node;
    const Errnum errnum = FindNode(path, node);
    if (errnum == Errnum::None)
        node->times = times;
    return errnum;
}

std::optional<Bytes> FileSystem::Content(const std::string& path) const {
    NodePtr node;
    if (FindNode(path, node) != Errnum::None || node->kind != Kind::File)
        return std::nullopt;
    return node->content;
}

std::vector<Listed> FileSystem::List(const std::string& path) const {
    std::vector<Listed> listing;
    NodePtr node;
    if (FindNode(path, node) != Errnum::None || node->kind != Kind::Folder)
        return listing;
    std::string prefix;
    for (const std::string& name : SplitPath(path))
        prefix += "/" + name;
    ListFolder(*node, prefix, listing);
    return listing;
}

void FileSystem::Clear() {
    CloseAll();
    m_root = std::make_shared<Node>(m_space, Kind::Folder, 0777, Now());
}

} // namespace handset
