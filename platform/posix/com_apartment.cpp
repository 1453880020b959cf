// Linux has no component automation.
#include "platform/com_apartment.h"

ComApartment::ComApartment() : m_bToEnd(false) {}
ComApartment::~ComApartment() {
    static_cast<void>(m_bToEnd);
}
