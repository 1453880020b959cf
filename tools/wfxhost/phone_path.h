// Paths on the phone: with '/', from the root.
#pragma once

#include <string>

namespace tools::wfxhost {

/// A path on the phone in normal form: it begins with '/' and has no empty, "." or ".." component. The root
/// is "/".
class PhonePath {
public:
    PhonePath() = default;
    /// Normalizes a path as typed, with or without a leading '/'.
    explicit PhonePath(const std::string& typed);

    /// Returns the path, which has no separator at its end unless it is the root.
    const std::string& Text() const { return m_text; }
    bool IsRoot() const { return m_text == "/"; }
    /// Returns true when the path was typed with a '/' at its end, so that only a folder can be meant.
    bool NamesFolder() const { return m_namesFolder; }
    /// Returns the last component, or an empty text for the root.
    std::string Name() const { return m_text.substr(m_text.rfind('/') + 1); }
    /// Returns the path of the folder that contains this entry; for the root, the root.
    PhonePath Folder() const;
    PhonePath Child(const std::string& name) const;
    /// False for a path with a backslash, which plug-ins read as a separator. They would use another file.
    bool IsRepresentable() const { return m_text.find('\\') == std::string::npos; }

private:
    std::string m_text = "/";
    bool m_namesFolder = false;
};

} // namespace tools::wfxhost
