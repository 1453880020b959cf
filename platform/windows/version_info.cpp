#include "platform/windows/version_info.h"

#include <vector>

// Must follow the system's main header, whose types it uses.
#include <winver.h>

namespace {

void Trim(std::wstring& sText) {
    constexpr wchar_t kWhiteSpace[] = L" \t\n\v\f\r";
    sText.erase(0, sText.find_first_not_of(kWhiteSpace));
    sText.erase(sText.find_last_not_of(kWhiteSpace) + 1);
}

void Split(WORD (&aNumbers)[4], DWORD iHigh, DWORD iLow) {
    aNumbers[0] = HIWORD(iHigh);
    aNumbers[1] = LOWORD(iHigh);
    aNumbers[2] = HIWORD(iLow);
    aNumbers[3] = LOWORD(iLow);
}

} // namespace

CVFXVersionInfo::CVFXVersionInfo(UINT iCodePage, LANGID iLanguage) : m_iCodePage(iCodePage) {
    const LCID iLocale = MAKELCID(iLanguage, SORT_DEFAULT);
    if (!IsValidLocale(iLocale, LCID_INSTALLED))
        return;
    const LCID iPrevious = GetThreadLocale();
    if (SetThreadLocale(iLocale))
        m_previousLocale = iPrevious;
}

CVFXVersionInfo::~CVFXVersionInfo() {
    if (m_previousLocale)
        SetThreadLocale(*m_previousLocale);
}

bool CVFXVersionInfo::Read(VersionRecord& record, std::wstring sModuleFile) const {
    Trim(sModuleFile);
    DWORD iUnused = 0;
    const DWORD iSize = GetFileVersionInfoSizeW(sModuleFile.c_str(), &iUnused);
    if (iSize == 0)
        return false;
    std::vector<BYTE> info(iSize);
    void* pBlock = nullptr;
    UINT iBlockSize = 0;
    if (!GetFileVersionInfoW(sModuleFile.c_str(), 0, iSize, info.data()) ||
        !VerQueryValueW(info.data(), L"\\", &pBlock, &iBlockSize) || pBlock == nullptr ||
        iBlockSize < sizeof(VS_FIXEDFILEINFO))
        return false;
    const auto& fixed = *static_cast<const VS_FIXEDFILEINFO*>(pBlock);
    Split(record.aProductVersion, fixed.dwProductVersionMS, fixed.dwProductVersionLS);
    Split(record.aFileVersion, fixed.dwFileVersionMS, fixed.dwFileVersionLS);
    return true;
}
