// Unloading the library, which may wait for threads on this system.
#include "platform/module_pin.h"

#include <mutex>

/// The live pins, the latest first.
class LivePins {
public:
    static void Add(ModulePin& pin) {
        const std::lock_guard lock(s_lock);
        pin.m_pNext = s_pFirst;
        s_pFirst = &pin;
    }
    static void Remove(const ModulePin& pin) {
        const std::lock_guard lock(s_lock);
        ModulePin** ppPin = &s_pFirst;
        while (*ppPin != &pin)
            ppPin = &(*ppPin)->m_pNext;
        *ppPin = pin.m_pNext;
    }
    static void End() {
        for (const ModulePin* pPin = s_pFirst; pPin != nullptr; pPin = pPin->m_pNext)
            if (pPin->m_pfnEnd != nullptr)
                pPin->m_pfnEnd(pPin->m_pOwner);
    }

private:
    static inline std::mutex s_lock;
    static inline ModulePin* s_pFirst = nullptr; // under s_lock
};

namespace {

bool g_bUnloading = false;

/// The system runs this function before the destruction of the library's objects when it unloads the library,
/// and after it when the process ends.
[[gnu::destructor]] void NoteUnloading() {
    g_bUnloading = true;
}

/// Objects that exist from the start, such as this one, are destroyed last.
struct AtTheEnd {
    ~AtTheEnd() {
        if (g_bUnloading)
            LivePins::End();
    }
} g_atTheEnd;

} // namespace

ModulePin::ModulePin(void* pOwner, EndFunction pfnEnd) : m_pOwner(pOwner), m_pfnEnd(pfnEnd) {
    LivePins::Add(*this);
}

ModulePin::~ModulePin() {
    LivePins::Remove(*this);
}

void ReleaseUnneededPins() {}

bool ProcessIsEnding() {
    return false;
}
