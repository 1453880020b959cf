// The automation thread, and waits that dispatch the thread's messages.
#include <windows.h>

// After windows.h, whose types it uses.
#include <objbase.h>

#include <memory>

#include "platform/com_apartment.h"
#include "platform/wait_event.h"
#include "portserver/com_thread_manager.h"
#include "portserver/function_dispatcher.h"
#include "tests/windows/checks.h"

namespace {

bool HasApartment() {
    APTTYPE eType{};
    APTTYPEQUALIFIER eQualifier{};
    return CoGetApartmentType(&eType, &eQualifier) == S_OK && eType != APTTYPE_MTA;
}

class AskForApartment : public FunctionDispatcher {
public:
    AskForApartment() : FunctionDispatcher("ask") {}
    void dispatch(void*) override { bFound = HasApartment(); }

    bool bFound = false;
};

void AutomationThread() {
    for (int i = 0; i < 2; ++i) { // the second round uses a new thread
        const auto pManager = ComThreadManager::Use();
        const auto pAsk = std::make_shared<AskForApartment>();
        pManager->executeFunction(pAsk, nullptr, 10000);
        EXPECT(pAsk->bFound);
    }
    EXPECT(!HasApartment()); // COM was initialised on the other thread alone
    {
        const ComApartment apartment;
        EXPECT(HasApartment());
    }
    EXPECT(!HasApartment());
}

WaitEvent* g_pToSet = nullptr;

void CALLBACK SetTheEvent(HWND, UINT, UINT_PTR iTimer, DWORD) {
    KillTimer(nullptr, iTimer);
    g_pToSet->Set();
}

void WaitsWithMessages() {
    WaitEvent event;
    void* const hEvent = event.Handle();
    const auto wait = [&](DWORD iLimit_ms) { return WaitWithMessages({&hEvent, 1}, iLimit_ms); };
    g_pToSet = &event;
    EXPECT_EQ(wait(10), kWaitTimedOut);
    SetTimer(nullptr, 0, 10, SetTheEvent);
    EXPECT(!event.Wait(200)); // dispatches no timer messages
    EXPECT_EQ(wait(30000), DWORD{0});
    event.Set();
    EXPECT_EQ(wait(30000), DWORD{0});
    EXPECT_EQ(wait(10), kWaitTimedOut); // the wait above reset the event
    PostQuitMessage(7);
    EXPECT_EQ(wait(50), kWaitTimedOut);
    MSG message{};
    EXPECT_EQ(PeekMessageA(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE), TRUE);
    EXPECT_EQ(message.wParam, WPARAM{7}); // the quit message is still in the queue
}

LRESULT CALLBACK SetTheEventTo(HWND hWindow, UINT iMessage, WPARAM wParam, LPARAM lParam) {
    if (iMessage == WM_APP)
        g_pToSet->Set();
    return DefWindowProcA(hWindow, iMessage, wParam, lParam);
}

/// The first message ends the first wait. The second message is then in the queue, and the next wait must
/// dispatch it.
void MessagesThatAWaitLeaves() {
    WaitEvent event;
    void* const hEvent = event.Handle();
    g_pToSet = &event;
    const HWND hWindow =
        CreateWindowExA(0, "STATIC", "", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
    SetWindowLongPtrA(hWindow, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(SetTheEventTo));
    for (int i = 0; i < 2; ++i)
        EXPECT(PostMessageA(hWindow, WM_APP, 0, 0));
    for (int i = 0; i < 2; ++i)
        EXPECT_EQ(WaitWithMessages({&hEvent, 1}, 30000), DWORD{0});
    DestroyWindow(hWindow);
}

} // namespace

int main() {
    return RunChecks({{"the automation thread", AutomationThread},
                      {"waits that dispatch messages", WaitsWithMessages},
                      {"messages left by a wait", MessagesThatAWaitLeaves}});
}
