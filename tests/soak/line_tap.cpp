// The linker (-Wl,--wrap) sends what the connection asks of its link through here.
#include "line_tap.h"

#include "link/comm_manager.h"

LineTap& TheLineTap() {
    static LineTap tap;
    return tap;
}

extern "C" {

bool __real__ZN16CQLibCommManager4SendEPKhjjb(CQLibCommManager*, const unsigned char*, DWORD, DWORD, bool);
bool __real__ZN16CQLibCommManager7Data2DMEh(CQLibCommManager*, unsigned char);

bool __wrap__ZN16CQLibCommManager4SendEPKhjjb(CQLibCommManager* pLink, const unsigned char* pPacket,
                                              DWORD iSize, DWORD iTimeout, bool bForceStartFlag) {
    LineTap& tap = TheLineTap();
    tap.bSilent = tap.goesUnanswered && tap.goesUnanswered({pPacket, pPacket + iSize});
    if (!__real__ZN16CQLibCommManager4SendEPKhjjb(pLink, pPacket, iSize, iTimeout, bForceStartFlag))
        return false;
    tap.iWaited_ms += tap.bSilent ? iTimeout : 0;
    return !tap.bSilent;
}

// The way out of AT data mode: two commands, 200 ms each.
bool __wrap__ZN16CQLibCommManager7Data2DMEh(CQLibCommManager* pLink, unsigned char iBaudRateMask) {
    if (!TheLineTap().bSilent)
        return __real__ZN16CQLibCommManager7Data2DMEh(pLink, iBaudRateMask);
    TheLineTap().iWaited_ms += 2 * 200;
    return false;
}
}
