// The ports of the machine, the ports on which a phone answers, and the aliases of ports.
#include <algorithm>
#include <cstdlib>
#include <exception>
#include <span>
#include <string>
#include <vector>

#include "platform/serial_ports.h"
#include "qlib/diag_ftm.h"
#include "qlib/resource_manager.h"

std::vector<ComPortAlias_struct> QLib_ResourceManager::m_vComPortAlias;
std::vector<ComPortSettings_struct> QLib_ResourceManager::m_vComPortSettings;

namespace {

constexpr size_t kNamePrefixLength = 3; // "COM"

// The number after a port name's first three characters; 0 when there is none.
unsigned short PortNumberOf(const std::string& sName) {
    if (sName.size() <= kNamePrefixLength)
        return 0;
    return static_cast<unsigned short>(std::strtol(sName.c_str() + kNamePrefixLength, nullptr, 10));
}

// A caller's port list: takes up to `capacity` numbers, then stores their count.
class PortList {
public:
    PortList(unsigned short* piCount, unsigned short* piPorts)
        : m_piCount(piCount), m_ports(piPorts, piPorts ? *piCount : 0) {}

    bool IsFull() const { return m_iWritten == m_ports.size(); }
    void Append(unsigned short iPort) { m_ports[m_iWritten++] = iPort; }
    void TellCount() const { *m_piCount = m_iWritten; }
    // The ports of those names, as many as fit; false when there are no names.
    bool Tell(const std::vector<std::string>& names) {
        for (const std::string& sName : names)
            if (!IsFull())
                Append(PortNumberOf(sName));
        TellCount();
        return !names.empty();
    }

private:
    unsigned short* m_piCount;
    std::span<unsigned short> m_ports;
    unsigned short m_iWritten = 0;
};

} // namespace

bool QLib_ResourceManager::QueryRegistryPortSettings() {
    std::vector<ComPortSettings_struct>().swap(m_vComPortSettings);
    try {
        std::vector<std::string> names;
        if (!ListSerialPorts(names))
            return false;
        for (const std::string& sName : names)
            m_vComPortSettings.push_back({static_cast<unsigned char>(PortNumberOf(sName)), 0});
        return true;
    } catch (const std::exception&) {
        return false;
    }
}

bool QLib_ResourceManager::GetAllPortList(unsigned short* piCount, unsigned short* piPorts) {
    if (piCount == nullptr)
        return false;
    PortList ports(piCount, piPorts);
    if (m_bIsUsingQpst)
        return ports.Tell(ServerPortNames(false));
    if (!QueryRegistryPortSettings())
        return false;
    for (const ComPortSettings_struct& port : m_vComPortSettings)
        if (!ports.IsFull())
            ports.Append(port.iComPortNumber);
    ports.TellCount();
    return true;
}

bool QLib_ResourceManager::GetAvailablePhonesPortList(unsigned short* piCount, unsigned short* piPorts,
                                                      unsigned short iIgnored, unsigned short* piIgnored) {
    if (piCount == nullptr)
        return false;
    PortList phones(piCount, piPorts);
    if (m_bIsUsingQpst)
        return phones.Tell(ServerPortNames(true));
    DestroyAll();
    if (!QueryRegistryPortSettings())
        return false;
    const std::span<const unsigned short> ignored(piIgnored, piIgnored ? iIgnored : 0);
    for (const ComPortSettings_struct& port : m_vComPortSettings) {
        if (phones.IsFull())
            break;
        if (std::find(ignored.begin(), ignored.end(), port.iComPortNumber) == ignored.end() &&
            PhoneAnswersOn(port.iComPortNumber))
            phones.Append(port.iComPortNumber);
    }
    phones.TellCount();
    return true;
}

bool QLib_ResourceManager::PhoneAnswersOn(unsigned short iComPort) {
    void* const hContext = CreateContext(iComPort);
    bool bAnswers = false;
    if (Diag_FTM* pPhone = GetDiag_FTM(hContext)) {
        bAnswers = pPhone->OpenPort() && pPhone->IsPhoneConnected();
        pPhone->ClosePort();
    }
    DestroyContext(hContext, false);
    return bAnswers;
}

unsigned short QLib_ResourceManager::FindAnsweringPort() {
    unsigned short iPort = kAnyPort;
    unsigned short iCount = 1;
    return GetAvailablePhonesPortList(&iCount, &iPort, 0, nullptr) && iCount == 1 ? iPort : kAnyPort;
}

bool QLib_ResourceManager::AddPortAliasEntry(unsigned short iLogicalPort, unsigned short iPhysicalPort) {
    try {
        m_vComPortAlias.push_back({iLogicalPort, iPhysicalPort});
        return true;
    } catch (const std::exception&) {
        return false;
    }
}

bool QLib_ResourceManager::GetPortAliasEntry(unsigned short iLogicalPort, unsigned short& iPhysicalPort) {
    for (const ComPortAlias_struct& alias : m_vComPortAlias) {
        if (alias.iLogicalPort == iLogicalPort) {
            iPhysicalPort = alias.iPhysicalPort;
            return true;
        }
    }
    return false;
}

bool QLib_ResourceManager::ClearPortAliasList() {
    std::vector<ComPortAlias_struct>().swap(m_vComPortAlias);
    return true;
}
