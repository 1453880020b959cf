// Paths on the phone, as the user types them: with '/', from the root.
#pragma once

#include <string>

namespace tools::wfxhost {

/// A path on the phone in its plain form: it begins with '/', and has no empty, "." or ".." component. The
/// root is "/".
class PhonePath {
public:
    PhonePath() = default;
    /// PhonePath takes a path as typed: with or without the leading '/'.
    explicit PhonePath(const std::string& typed);

    /// Text gives the path, without a separator at its end (the root excepted).
    const std::string& Text() const { return m_text; }
    bool IsRoot() const { return m_text == "/"; }
    /// NamesFolder tells whether it was typed with a '/' at its end, so that only a folder can be meant.
    bool NamesFolder() const { return m_namesFolder; }
    /// Name gives the last component; empty for the root.
    std::string Name() const { return m_text.substr(m_text.rfind('/') + 1); }
    /// Folder gives the path of the folder that holds this entry; the root's is the root.
    PhonePath Folder() const;
    PhonePath Child(const std::string& name) const;
    /// IsTellable is false for a path with a backslash: plug-ins take that for a separator, and would work on
    /// another file.
    bool IsTellable() const { return m_text.find('\\') == std::string::npos; }

private:
    std::string m_text = "/";
    bool m_namesFolder = false;
};

} // namespace tools::wfxhost
