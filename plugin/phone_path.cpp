#include "plugin/phone_path.h"

#include <algorithm>
#include <cstring>
#include <vector>

#include "platform/host_interface.h"

bool IsUsableHostPath(const char* sPath) {
    return sPath && std::memchr(sPath, '\0', kMaxPathSize);
}

bool CopyHostPath(const char* sHostPath, char* sPhonePath) {
    if (!IsUsableHostPath(sHostPath))
        return false;
    std::memcpy(sPhonePath, sHostPath, std::strlen(sHostPath) + 1);
    ToPhonePath(sPhonePath);
    StripLeadingSeparators(sPhonePath);
    return true;
}

bool TakeHostPath(char* sHostPath, char* sPhonePath) {
    if (!CopyHostPath(sHostPath, sPhonePath))
        return false;
    if (kEntryPointsChangePaths)
        std::memcpy(sHostPath, sPhonePath, std::strlen(sPhonePath) + 1);
    return true;
}

void ToPhonePath(char* sPath) {
    char* pEnd = sPath + std::strlen(sPath);
    const bool bDrivePath = pEnd - sPath >= 3 && (sPath[1] == ':' || sPath[2] == ':');
    if (bDrivePath)
        return;
    std::replace(sPath, pEnd, '\\', '/');
    pEnd = std::unique(sPath, pEnd, [](char a, char b) { return a == '/' && b == '/'; });
    *pEnd = '\0';
}

void StripLeadingSeparators(char* sPath) {
    const char* const pRest = sPath + std::strspn(sPath, "/\\");
    std::memmove(sPath, pRest, std::strlen(pRest) + 1);
}

void ToHostPath(char* sPath, char cSeparator) {
    std::replace(sPath, sPath + std::strlen(sPath), '/', cSeparator);
}

char SeparatorOf(const char* sHostPath) {
    const char* const pSeparator = std::strpbrk(sHostPath, "/\\");
    return pSeparator ? *pSeparator : kHostSeparator;
}

std::string FromRoot(std::string_view sPath) {
    std::vector<std::string_view> parts;
    while (!sPath.empty()) {
        const std::string_view sPart = sPath.substr(0, sPath.find('/'));
        sPath.remove_prefix(std::min(sPart.size() + 1, sPath.size()));
        if (sPart == ".." && !parts.empty())
            parts.pop_back();
        else if (!sPart.empty() && sPart != "." && sPart != "..")
            parts.push_back(sPart);
    }
    std::string sWhole;
    for (const std::string_view sPart : parts)
        sWhole.append("/").append(sPart);
    return sWhole.empty() ? "/" : sWhole;
}

const char* EntryName(const char* sPath) {
    const char* const pSlash = std::strrchr(sPath, '/');
    return pSlash ? pSlash + 1 : sPath;
}
