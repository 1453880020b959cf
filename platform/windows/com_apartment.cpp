// Component automation on a thread: COM.
#include "platform/com_apartment.h"

#include "system/serial.h"

// Must follow the system's main header, whose types it uses.
#include <objbase.h>

ComApartment::ComApartment() : m_bToEnd(SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) {}

ComApartment::~ComApartment() {
    if (m_bToEnd)
        CoUninitialize();
}
