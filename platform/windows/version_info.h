// The version resource of a module.
#pragma once

#include <optional>
#include <string>

#include "system/serial.h"

/// What a version resource says; numbers from the most significant one on.
struct VersionRecord {
    WORD aProductVersion[4];
    WORD aFileVersion[4];
};

/// CVFXVersionInfo reads version resources. While it lives, the thread that made it has the locale of the
/// given language, where the system knows it; that thread destroys it.
class CVFXVersionInfo {
public:
    CVFXVersionInfo(UINT iCodePage, LANGID iLanguage);
    ~CVFXVersionInfo();
    CVFXVersionInfo(const CVFXVersionInfo&) = delete;
    CVFXVersionInfo& operator=(const CVFXVersionInfo&) = delete;

    /// Read fills the record from the resource of the module file of that name, blanks around which do not
    /// count. False, with the record as it was, when there is none. May throw std::bad_alloc.
    bool Read(VersionRecord& record, std::wstring sModuleFile) const;

    UINT CodePage() const { return m_iCodePage; }

private:
    const UINT m_iCodePage;
    std::optional<LCID> m_previousLocale; // set while the thread's locale is changed
};
