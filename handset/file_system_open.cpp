// Open files and folders of the simulated file system, and its free space.
#include <algorithm>

#include "handset/file_system_paths.h"

namespace handset {
namespace {

constexpr uint32_t kOwnerRead = 0400;
constexpr uint32_t kOwnerWrite = 0200;
constexpr uint32_t kMaxNodes = 1000000;

bool MayRead(uint32_t flags) {
    return (flags & kAccessMask) != kWriteOnly;
}

bool MayWrite(uint32_t flags) {
    return (flags & kAccessMask) != kReadOnly;
}

Errnum CheckPermissions(const Node& node, uint32_t flags) {
    const bool readRefused = MayRead(flags) && !(node.permissions & kOwnerRead);
    const bool writeRefused = MayWrite(flags) && !(node.permissions & kOwnerWrite);
    return readRefused || writeRefused ? Errnum::NoAccess : Errnum::None;
}

void TouchContent(Node& node) {
    node.times.modification = Now();
    node.times.change = node.times.modification;
}

} // namespace

Errnum FileSystem::CreateOrCheck(const Place& place, uint32_t flags, uint32_t permissions, NodePtr& node) {
    if (place.errnum != Errnum::None)
        return place.errnum;
    node = place.node;
    if (node == nullptr) {
        if (!(flags & kCreate))
            return Errnum::NotFound;
        node = std::make_shared<Node>(m_space, Kind::File, permissions, Now());
        place.folder->Add(place.name, node);
        TouchContent(*place.folder);
        return Errnum::None;
    }
    if ((flags & kCreate) && (flags & kExclusive))
        return Errnum::Exists;
    if (node->kind == Kind::Folder)
        return Errnum::IsFolder;
    return CheckPermissions(*node, flags);
}

Errnum FileSystem::Open(const std::string& path, uint32_t flags, uint32_t permissions, int32_t& descriptor) {
    descriptor = -1;
    if ((flags & kAccessMask) == kAccessMask)
        return Errnum::Invalid;
    if (m_files.size() >= m_openLimit)
        return Errnum::TooManyOpen;
    const bool exclusive = (flags & kCreate) && (flags & kExclusive);
    NodePtr node;
    const Errnum errnum = CreateOrCheck(Find(path, !exclusive), flags, permissions, node);
    if (errnum != Errnum::None)
        return errnum;
    if ((flags & kTruncate) && MayWrite(flags)) {
        node->content.clear();
        node->HoldBlocks(0);
        TouchContent(*node);
    }
    descriptor = m_nextDescriptor++;
    m_files[descriptor] = {node, flags};
    return Errnum::None;
}

Errnum FileSystem::Close(int32_t descriptor) {
    return m_files.erase(descriptor) ? Errnum::None : Errnum::BadDescriptor;
}

Errnum FileSystem::Read(int32_t descriptor, uint32_t count, uint32_t offset, Bytes& data) {
    data.clear();
    const auto open = m_files.find(descriptor);
    if (open == m_files.end() || !MayRead(open->second.flags))
        return Errnum::BadDescriptor;
    Node& node = *open->second.node;
    node.times.access = Now();
    if (offset >= node.content.size())
        return Errnum::None;
    const size_t available = std::min<size_t>(count, node.content.size() - offset);
    const auto begin = node.content.begin() + offset;
    data.assign(begin, begin + static_cast<ptrdiff_t>(available));
    return Errnum::None;
}

Errnum FileSystem::Write(int32_t descriptor, uint32_t offset, const Bytes& data, uint32_t& written) {
    written = 0;
    const auto open = m_files.find(descriptor);
    if (open == m_files.end() || !MayWrite(open->second.flags))
        return Errnum::BadDescriptor;
    if (data.empty())
        return Errnum::None;
    Node& node = *open->second.node;
    const uint64_t begin = open->second.flags & kAppend ? node.content.size() : offset;
    if (begin + data.size() > kMaxFileSize)
        return Errnum::FileTooBig;
    const uint64_t room = uint64_t{node.Blocks()} + m_space.FreeBlocks();
    const uint64_t end = std::min<uint64_t>(begin + data.size(), room * m_space.blockSize);
    if (end <= begin)
        return Errnum::NoSpace;
    const uint64_t size = std::max<uint64_t>(end, node.content.size());
    node.HoldBlocks(BlocksFor(size));
    node.content.resize(size);
    written = static_cast<uint32_t>(end - begin);
    std::copy_n(data.begin(), written, node.content.begin() + static_cast<ptrdiff_t>(begin));
    TouchContent(node);
    return Errnum::None;
}

Errnum FileSystem::OpenFolder(const std::string& path, uint32_t& handle) {
    handle = 0;
    NodePtr node;
    const Errnum errnum = FindNode(path, node);
    if (errnum != Errnum::None)
        return errnum;
    if (node->kind != Kind::Folder)
        return Errnum::NotFolder;
    if (!(node->permissions & kOwnerRead))
        return Errnum::NoAccess;
    if (m_folders.size() >= m_openLimit)
        return Errnum::TooManyOpen;
    handle = m_nextHandle++;
    std::vector<FolderEntry>& entries = m_folders[handle];
    entries.reserve(node->entries.size());
    for (const auto& [key, entry] : node->entries) {
        const Node& child = *entry.node;
        entries.push_back({child.kind, child.Mode(), child.Size(), child.times, entry.name});
    }
    return Errnum::None;
}

Errnum FileSystem::ReadFolder(uint32_t handle, uint32_t number, FolderEntry& entry) const {
    entry = {};
    const auto open = m_folders.find(handle);
    if (open == m_folders.end())
        return Errnum::BadDescriptor;
    if (number == 0)
        return Errnum::Invalid;
    if (number <= open->second.size())
        entry = open->second[number - 1];
    return Errnum::None;
}

Errnum FileSystem::CloseFolder(uint32_t handle) {
    return m_folders.erase(handle) ? Errnum::None : Errnum::BadDescriptor;
}

SpaceStatus FileSystem::GetSpace() const {
    return {m_space.blockSize, m_space.totalBlocks, m_space.FreeBlocks(),
            kMaxFileSize,      m_space.nodes,       kMaxNodes};
}

void FileSystem::SetFreeBlocks(uint32_t blocks) {
    m_space.totalBlocks =
        static_cast<uint32_t>(std::min<uint64_t>(uint64_t{m_space.usedBlocks} + blocks, UINT32_MAX));
}

void FileSystem::SetBlockSize(uint32_t bytes) {
    if (m_space.usedBlocks == 0 && bytes > 0)
        m_space.blockSize = bytes;
}

void FileSystem::CloseAll() {
    m_files.clear();
    m_folders.clear();
}

} // namespace handset
