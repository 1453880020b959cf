// The parts of the simulated flash file system: files, folders and symbolic links, and the blocks they use.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <unordered_map>

#include "handset/bytes.h"

namespace handset {

/// The entry types in READDIR responses.
enum class Kind : uint32_t { File = 0, Folder = 1, Link = 2 };

/// Seconds since 1970.
struct Times {
    uint32_t access = 0;
    uint32_t modification = 0;
    uint32_t change = 0;
};

/// The flash: its blocks, and how many are in use. A file uses as many blocks as its content needs (an empty
/// file none), a folder or link one, the root none.
struct Space {
    uint32_t blockSize = 512;
    uint32_t totalBlocks = 131072; // 64 MiB
    uint32_t usedBlocks = 0;
    uint32_t nodes = 0;

    uint32_t FreeBlocks() const { return usedBlocks < totalBlocks ? totalBlocks - usedBlocks : 0; }
};

struct Node;
using NodePtr = std::shared_ptr<Node>;

/// One file, folder or link. If an open file is removed, its node lives on until the last descriptor is
/// closed; only then its blocks become free.
struct Node {
    Node(Space& owner, Kind nodeKind, uint32_t nodePermissions, uint32_t now);
    ~Node();
    Node(const Node&) = delete;
    Node& operator=(const Node&) = delete;

    /// The mode as STAT reports it: type bits and permissions.
    uint32_t Mode() const;
    /// Bytes of a file's content or of a link's target; 0 for a folder.
    uint32_t Size() const;
    /// For a folder 2 plus one per subfolder, otherwise 1.
    uint32_t LinkCount() const;
    bool IsEmptyFolder() const { return entries.empty(); }

    NodePtr Find(const std::string& name) const;
    /// Adds an entry after the others. The name must not exist yet.
    void Add(const std::string& name, NodePtr child);
    void Remove(const std::string& name);

    /// Allocates or frees blocks until the node has `count`. False, with no change, when there are not
    /// enough.
    bool HoldBlocks(uint32_t count);
    uint32_t Blocks() const { return m_blocks; }

    struct Entry {
        std::string name;
        NodePtr node;
    };

    const Kind kind;
    uint32_t permissions; // the lowest 12 bits of the mode
    Times times;
    Bytes content;                               // of a file
    std::string target;                          // of a link
    std::array<uint32_t, 2> attributes{0xFF, 0}; // the two values of the old attribute requests
    std::map<uint64_t, Entry> entries;           // of a folder, in order of addition
    Node* parent = nullptr;                      // of a folder; null for the root

private:
    Space& m_space;
    std::unordered_map<std::string, uint64_t> m_index; // name -> key in entries
    uint64_t m_nextKey = 0;
    uint32_t m_folders = 0;
    uint32_t m_blocks = 0;
};

} // namespace handset
