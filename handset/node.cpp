// Files, folders and links of the simulated flash file system.
#include "handset/node.h"

namespace handset {
namespace {

constexpr uint32_t kFolderBits = 0x4000;
constexpr uint32_t kFileBits = 0x8000;
constexpr uint32_t kLinkBits = 0xA000;

} // namespace

Node::Node(Space& owner, Kind nodeKind, uint32_t nodePermissions, uint32_t now)
    : kind(nodeKind), permissions(nodePermissions & 07777), times{now, now, now}, m_space(owner) {
    ++m_space.nodes;
}

Node::~Node() {
    m_space.usedBlocks -= m_blocks;
    --m_space.nodes;
}

uint32_t Node::Mode() const {
    const uint32_t type = kind == Kind::Folder ? kFolderBits : kind == Kind::Link ? kLinkBits : kFileBits;
    return type | permissions;
}

uint32_t Node::Size() const {
    return static_cast<uint32_t>(kind == Kind::Link ? target.size() : content.size());
}

uint32_t Node::LinkCount() const {
    return kind == Kind::Folder ? 2 + m_folders : 1;
}

NodePtr Node::Find(const std::string& name) const {
    const auto found = m_index.find(name);
    return found == m_index.end() ? nullptr : entries.at(found->second).node;
}

void Node::Add(const std::string& name, NodePtr child) {
    if (child->kind == Kind::Folder) {
        child->parent = this;
        ++m_folders;
    }
    m_index[name] = m_nextKey;
    entries[m_nextKey++] = {name, std::move(child)};
}

void Node::Remove(const std::string& name) {
    const auto found = m_index.find(name);
    if (found == m_index.end())
        return;
    const NodePtr child = entries.at(found->second).node;
    if (child->kind == Kind::Folder) {
        child->parent = nullptr;
        --m_folders;
    }
    entries.erase(found->second);
    m_index.erase(found);
}

bool Node::HoldBlocks(uint32_t count) {
    if (count > m_blocks && count - m_blocks > m_space.FreeBlocks())
        return false;
    m_space.usedBlocks = m_space.usedBlocks - m_blocks + count;
    m_blocks = count;
    return true;
}

} // namespace handset
