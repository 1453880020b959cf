// Path look-up in the simulated file system.
#include "handset/file_system_paths.h"

#include <chrono>
#include <deque>

namespace handset {
namespace {

constexpr int kMaxLinks = 8;
constexpr size_t kMaxName = 255;

bool IsAbsolute(const std::string& path) {
    return !path.empty() && path.front() == '/';
}

} // namespace

std::vector<std::string> SplitPath(const std::string& path) {
    std::vector<std::string> names;
    size_t begin = 0;
    while (begin < path.size()) {
        const size_t slash = path.find('/', begin);
        const size_t end = slash == std::string::npos ? path.size() : slash;
        const std::string name = path.substr(begin, end - begin);
        if (!name.empty() && name != ".")
            names.push_back(name);
        begin = end + 1;
    }
    return names;
}

uint32_t Now() {
    const auto sinceEpoch = std::chrono::system_clock::now().time_since_epoch();
    return static_cast<uint32_t>(std::chrono::duration_cast<std::chrono::seconds>(sinceEpoch).count());
}

FileSystem::Place FileSystem::Find(const std::string& path, bool followLast) const {
    const std::vector<std::string> names = SplitPath(path);
    std::deque<std::string> todo(names.begin(), names.end());
    std::vector<NodePtr> above; // the folders from the root down to place.node, without it
    Place place{Errnum::None, m_root, nullptr, ""};
    int links = 0;
    while (!todo.empty()) {
        const std::string name = todo.front();
        todo.pop_front();
        if (place.node == nullptr)
            return {Errnum::NotFound, nullptr, nullptr, ""};
        if (place.node->kind != Kind::Folder)
            return {Errnum::NotFolder, nullptr, nullptr, ""};
        if (name.size() > kMaxName)
            return {Errnum::NameTooLong, nullptr, nullptr, ""};
        if (name == "..") {
            if (!above.empty()) {
                place.node = above.back();
                above.pop_back();
            }
            place.folder = nullptr;
            continue;
        }
        const NodePtr child = place.node->Find(name);
        if (child && child->kind == Kind::Link && (followLast || !todo.empty())) {
            if (++links > kMaxLinks)
                return {Errnum::LinkLoop, nullptr, nullptr, ""};
            const std::vector<std::string> target = SplitPath(child->target);
            todo.insert(todo.begin(), target.begin(), target.end());
            if (IsAbsolute(child->target)) {
                above.clear();
                place.node = m_root;
            }
            place.folder = nullptr;
            continue;
        }
        above.push_back(place.node);
        place = {Errnum::None, child, place.node, name};
    }
    return place;
}

Errnum FileSystem::FindNode(const std::string& path, NodePtr& node) const {
    const Place place = Find(path, true);
    node = place.node;
    return place.Missing();
}

} // namespace handset
