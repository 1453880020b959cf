// Names in the simulated file system: entries are made, removed, renamed and looked up.
#include "handset/file_system.h"

#include "handset/file_system_paths.h"

namespace handset {
namespace {

constexpr uint32_t kPermissionBits = 07777;

/// The two folders may be the same one.
void Touch(const NodePtr& folder, uint32_t now) {
    folder->times.modification = now;
    folder->times.change = now;
}

bool LiesWithin(const Node* node, const Node* folder) {
    for (; node; node = node->parent)
        if (node == folder)
            return true;
    return false;
}

/// Why `moved` may not take the place of `existing`.
Errnum CheckReplacement(const Node& moved, const Node& existing) {
    if (moved.kind != Kind::Folder)
        return existing.kind == Kind::Folder ? Errnum::IsFolder : Errnum::None;
    if (existing.kind != Kind::Folder)
        return Errnum::NotFolder;
    return existing.IsEmptyFolder() ? Errnum::None : Errnum::NotEmpty;
}

} // namespace

FileSystem::FileSystem() : m_root(std::make_shared<Node>(m_space, Kind::Folder, 0777, Now())) {}

FileSystem::~FileSystem() = default;

uint32_t FileSystem::BlocksFor(uint64_t bytes) const {
    return static_cast<uint32_t>((bytes + m_space.blockSize - 1) / m_space.blockSize);
}

Errnum FileSystem::Make(const std::string& path, Kind kind, uint32_t permissions, NodePtr& made) {
    const Place place = Find(path, false);
    if (place.errnum != Errnum::None)
        return place.errnum;
    if (place.node != nullptr)
        return Errnum::Exists;
    const NodePtr node = std::make_shared<Node>(m_space, kind, permissions, Now());
    if (!node->HoldBlocks(1))
        return Errnum::NoSpace;
    Touch(place.folder, node->times.change);
    place.folder->Add(place.name, node);
    made = node;
    return Errnum::None;
}

Errnum FileSystem::MakeFolder(const std::string& path, uint32_t permissions) {
    NodePtr made;
    return Make(path, Kind::Folder, permissions, made);
}

Errnum FileSystem::MakeLink(const std::string& path, const std::string& target) {
    if (target.empty())
        return Errnum::NotFound;
    NodePtr made;
    const Errnum errnum = Make(path, Kind::Link, 0777, made);
    if (errnum == Errnum::None)
        made->target = target;
    return errnum;
}

Errnum FileSystem::RemoveFolder(const std::string& path) {
    const Place place = Find(path, false);
    if (place.Unmovable() != Errnum::None)
        return place.Unmovable();
    if (place.node->kind != Kind::Folder)
        return Errnum::NotFolder;
    if (!place.node->IsEmptyFolder())
        return Errnum::NotEmpty;
    place.folder->Remove(place.name);
    Touch(place.folder, Now());
    return Errnum::None;
}

Errnum FileSystem::Unlink(const std::string& path) {
    const Place place = Find(path, false);
    if (place.Missing() != Errnum::None)
        return place.Missing();
    if (place.node->kind == Kind::Folder)
        return Errnum::IsFolder;
    place.folder->Remove(place.name);
    Touch(place.folder, Now());
    return Errnum::None;
}

Errnum FileSystem::Rename(const std::string& oldPath, const std::string& newPath) {
    const Place from = Find(oldPath, false);
    if (from.Unmovable() != Errnum::None)
        return from.Unmovable();
    const Place to = Find(newPath, false);
    if (to.errnum != Errnum::None)
        return to.errnum;
    if (to.node == from.node)
        return Errnum::None;
    if (to.folder == nullptr)
        return Errnum::Busy;
    if (from.node->kind == Kind::Folder && LiesWithin(to.folder.get(), from.node.get()))
        return Errnum::Invalid;
    if (to.node != nullptr) {
        const Errnum errnum = CheckReplacement(*from.node, *to.node);
        if (errnum != Errnum::None)
            return errnum;
        to.folder->Remove(to.name);
    }
    from.folder->Remove(from.name);
    to.folder->Add(to.name, from.node);
    const uint32_t now = Now();
    from.node->times.change = now;
    Touch(from.folder, now);
    Touch(to.folder, now);
    return Errnum::None;
}

Errnum FileSystem::ReadLink(const std::string& path, std::string& target) const {
    const Place place = Find(path, false);
    if (place.Missing() != Errnum::None)
        return place.Missing();
    if (place.node->kind != Kind::Link)
        return Errnum::Invalid;
    target = place.node->target;
    return Errnum::None;
}

Errnum FileSystem::Stat(const std::string& path, Status& status) const {
    NodePtr node;
    const Errnum errnum = FindNode(path, node);
    if (errnum == Errnum::None)
        status = {node->Mode(), node->Size(), node->LinkCount(), node->times};
    return errnum;
}

Errnum FileSystem::Access(const std::string& path) const {
    NodePtr node;
    return FindNode(path, node);
}

Errnum FileSystem::ChangeMode(const std::string& path, uint32_t permissions) {
    NodePtr node;
    const Errnum errnum = FindNode(path, node);
    if (errnum == Errnum::None) {
        node->permissions = permissions & kPermissionBits;
        node->times.change = Now();
    }
    return errnum;
}

Errnum FileSystem::Attributes(const std::string& path, uint32_t& first, uint32_t& second,
                              uint32_t& third) const {
    NodePtr node;
    const Errnum errnum = FindNode(path, node);
    if (errnum == Errnum::None) {
        first = node->attributes[0];
        second = node->attributes[1];
        third = node->Size();
    }
    return errnum;
}

Errnum FileSystem::SetAttributes(const std::string& path, uint32_t first, uint32_t second) {
    NodePtr node;
    const Errnum errnum = FindNode(path, node);
    if (errnum == Errnum::None)
        node->attributes = {first, second};
    return errnum;
}

} // namespace handset
