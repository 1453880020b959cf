#include "wfxhost/temporary.h"

#include <cstdio>
#include <random>

#include "common/failure.h"

namespace tools::wfxhost {

namespace fs = std::filesystem;

std::string FreshName(const char* lead, const char* ending) {
    char text[64];
    std::random_device random;
    std::snprintf(text, sizeof text, "%s%08X%s", lead, random(), ending);
    return text;
}

TemporaryFolder::TemporaryFolder() {
    std::error_code error;
    m_path = fs::temp_directory_path(error) / FreshName("quillet-", "");
    if (error || !fs::create_directory(m_path, error))
        throw Failure("cannot make a folder for temporary files: " + error.message());
}

TemporaryFolder::~TemporaryFolder() {
    std::error_code error;
    fs::remove_all(m_path, error);
}

} // namespace tools::wfxhost
