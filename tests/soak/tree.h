// The contents of a phone as a value that can be compared and copied to a phone.
#pragma once

#include <map>
#include <string>

#include "handset/file_system.h"

/// Maps each path to "d" for a folder, "f" and the content of a file, or "l" and the target of a link.
using Tree = std::map<std::string, std::string>;

inline Tree TreeOf(const handset::FileSystem& files) {
    Tree tree;
    for (const handset::Listed& entry : files.List()) {
        std::string sTarget;
        if (entry.kind == handset::Kind::Folder)
            tree[entry.path] = "d";
        else if (files.ReadLink(entry.path, sTarget) == handset::Errnum::None)
            tree[entry.path] = "l" + sTarget;
        else {
            const handset::Bytes content = files.Content(entry.path).value();
            tree[entry.path] = "f" + std::string(content.begin(), content.end());
        }
    }
    return tree;
}

inline void Plant(const Tree& tree, handset::FileSystem& files) {
    for (const auto& [sPath, sWhat] : tree)
        if (sWhat[0] == 'd')
            files.AddFolder(sPath);
        else if (sWhat[0] == 'l')
            files.AddLink(sPath, sWhat.substr(1));
        else
            files.AddFile(sPath, sWhat.substr(1));
}
