// The list of serial ports and the present devices, both from the machine's device tree.
#include <exception>
#include <string_view>

#include "platform/devices.h"
#include "platform/posix/com_names.h"
#include "platform/posix/device_tree.h"
#include "platform/serial_ports.h"

namespace {

std::string ComName(int iCom) {
    return "COM" + std::to_string(iCom);
}

/// Runs `fill`; a list that could not be completed is emptied.
template <class List, class Fill>
bool FillWhole(List& list, Fill fill) {
    list.clear();
    try {
        std::vector<int> coms;
        if (!ListComTtys(coms))
            return false;
        for (const int iCom : coms)
            fill(iCom);
        return true;
    } catch (const std::exception&) {
        list.clear();
        return false;
    }
}

} // namespace

bool ListSerialPorts(std::vector<std::string>& names) {
    return FillWhole(names, [&](int iCom) { names.push_back(ComName(iCom)); });
}

bool ListPresentDevices(const char* sClassName, std::vector<PresentDevice>& devices) {
    devices.clear();
    const std::string_view sClass = sClassName;
    const bool bModems = sClass == "Modem";
    if (!bModems && sClass != "Ports")
        return false;
    return FillWhole(devices, [&](int iCom) {
        if (IsModemCom(iCom) != bModems)
            return;
        if (auto usb = FindUsbInterface(iCom))
            devices.push_back({ComName(iCom), std::move(usb->sDescription), std::move(usb->sInstanceId)});
    });
}
