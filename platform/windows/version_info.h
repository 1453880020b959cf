// The version resource of a module.
#pragma once

#include <optional>
#include <string>

#include "system/serial.h"

/// The numbers of a version resource, most significant first.
struct VersionRecord {
    WORD aProductVersion[4];
    WORD aFileVersion[4];
};

/// CVFXVersionInfo reads version resources. While it lives, the thread that made it uses the locale of the
/// given language, if the system has it; the same thread destroys it.
class CVFXVersionInfo {
public:
    CVFXVersionInfo(UINT iCodePage, LANGID iLanguage);
    ~CVFXVersionInfo();
    CVFXVersionInfo(const CVFXVersionInfo&) = delete;
    CVFXVersionInfo& operator=(const CVFXVersionInfo&) = delete;

    /// Read fills the record from the version resource of a module file; blanks around the file name are
    /// ignored. False, with the record unchanged, when there is none. May throw std::bad_alloc.
    bool Read(VersionRecord& record, std::wstring sModuleFile) const;

    UINT CodePage() const { return m_iCodePage; }

private:
    const UINT m_iCodePage;
    std::optional<LCID> m_previousLocale; // set while the thread's locale is changed
};
