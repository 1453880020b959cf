// Names of local files on Windows.
#include <windows.h>

#include <filesystem>
#include <initializer_list>

#include "common/library_name.h"

namespace tools {
namespace {

namespace fs = std::filesystem;

/// Returns the name in the system's code page; empty when a character is missing there.
std::string InCodePage(const std::wstring& name) {
    const bool isUtf8 = GetACP() == CP_UTF8; // which lacks none, and allows neither flag nor question
    const DWORD flags = isUtf8 ? 0 : WC_NO_BEST_FIT_CHARS;
    BOOL isMissing = FALSE;
    std::string text(name.size() * 4, '\0');
    const int length =
        WideCharToMultiByte(CP_ACP, flags, name.data(), static_cast<int>(name.size()), text.data(),
                            static_cast<int>(text.size()), nullptr, isUtf8 ? nullptr : &isMissing);
    text.resize(isMissing ? 0 : static_cast<size_t>(length));
    return text;
}

/// Returns the short form of a path that exists; empty when it has none.
fs::path Shortened(const fs::path& path) {
    std::wstring name(32768, L'\0');
    name.resize(GetShortPathNameW(path.c_str(), name.data(), static_cast<DWORD>(name.size())));
    return name;
}

} // namespace

std::string LibraryName(const fs::path& path) {
    const fs::path folder = Shortened(path.parent_path());
    for (const fs::path& name : {path, Shortened(path), folder.empty() ? folder : folder / path.filename()}) {
        if (std::string text = InCodePage(name.wstring()); !text.empty())
            return text;
    }
    return "";
}

} // namespace tools
