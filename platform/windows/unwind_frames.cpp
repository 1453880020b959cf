// Registers the library's unwind frames with the library's own unwinder (32-bit Windows).
//
// There the unwinder finds frames in a list, to which each module is added when it is loaded. If the process
// has libgcc_s_dw2-1.dll, the compiler's start-up code adds every module to the list of that library, even a
// module that is linked to an unwinder of its own. That unwinder then knows no frames, and the first
// exception inside the module would terminate the host. (64-bit Windows keeps one list for the whole
// process.)
#ifdef __i386__

#include <cstring>

#include "platform/module_pin.h"
#include "platform/windows/module.h"

// Functions of the unwinder linked into this module; no header declares them.
extern "C" {
const void* _Unwind_Find_FDE(const void* pCode, void* pBases);
void __register_frame(void* pFrames);
void __deregister_frame(void* pFrames);
}

namespace {

/// The start of this module's frames; null when it has none. Section names are cut to eight characters.
void* FrameSection() {
    char* const pModule = reinterpret_cast<char*>(ThisModule());
    const auto* const pDos = reinterpret_cast<const IMAGE_DOS_HEADER*>(pModule);
    const auto* const pHeaders = reinterpret_cast<const IMAGE_NT_HEADERS*>(pModule + pDos->e_lfanew);
    const IMAGE_SECTION_HEADER* pSection = IMAGE_FIRST_SECTION(pHeaders);
    for (WORD i = 0; i < pHeaders->FileHeader.NumberOfSections; ++i, ++pSection)
        if (std::memcmp(pSection->Name, ".eh_fram", IMAGE_SIZEOF_SHORT_NAME) == 0)
            return pModule + pSection->VirtualAddress;
    return nullptr;
}

class OwnFrames {
public:
    OwnFrames() {
        void* aBases[3] = {};
        if (_Unwind_Find_FDE(reinterpret_cast<const void*>(&FrameSection), aBases) == nullptr)
            m_pFrames = FrameSection();
        if (m_pFrames != nullptr)
            __register_frame(m_pFrames);
    }
    ~OwnFrames() {
        // When the process ends, the unwinder's lock may be held by a thread that no longer exists.
        if (m_pFrames != nullptr && !ProcessIsEnding())
            __deregister_frame(m_pFrames);
    }
    OwnFrames(const OwnFrames&) = delete;
    OwnFrames& operator=(const OwnFrames&) = delete;

private:
    void* m_pFrames = nullptr;
};

// The first object of the module to be constructed and the last to be destroyed.
[[gnu::init_priority(101)]] OwnFrames g_ownFrames;

} // namespace

#endif
