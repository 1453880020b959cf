#include "mount/phone_session.h"

#include <algorithm>
#include <vector>

namespace tools::mount {
namespace {

constexpr unsigned short kAnyPort = QLib_ResourceManager::kAnyPort;
constexpr unsigned short kMostPorts = 256;

std::vector<unsigned short> Ports() {
    std::vector<unsigned short> ports(kMostPorts);
    unsigned short count = kMostPorts;
    ports.resize(QLib_ResourceManager::GetAllPortList(&count, ports.data()) ? count : 0);
    return ports;
}

bool PortExists(unsigned short port) {
    const std::vector<unsigned short> ports = Ports();
    return std::find(ports.begin(), ports.end(), port) != ports.end();
}

} // namespace

bool PhoneSession::Open(unsigned short port) {
    m_context.reset(QLib_ResourceManager::CreateContext(port));
    m_phone = QLib_ResourceManager::GetDiag_FTM(m_context.get());
    if (m_phone != nullptr)
        QLib_ResourceManager::GetComPortNumber(m_context.get(), &m_port);
    return m_phone != nullptr && m_phone->OpenPort();
}

void PhoneSession::RequireHandset() {
    const bool isOpen = Open(m_wantedPort);
    if (isOpen && m_phone->IsPhoneConnected())
        return;
    std::string reason;
    if (m_phone != nullptr)
        reason = PortErrorText(m_phone->GetPortError(), "port COM" + std::to_string(m_port));
    else
        reason = Ports().empty() ? "none is attached" : "none answers on any port";
    throw Failure("no handset (" + reason + ")", Status::NoHandset);
}

void PhoneSession::Connect() {
    if (m_context && !m_isLost)
        return;
    m_context.reset();
    const bool hasMoved = m_wantedPort == kAnyPort && !PortExists(m_port);
    const unsigned short port = m_port;
    if (!Open(hasMoved ? kAnyPort : m_port) || (m_isLost && !m_phone->IsPhoneConnected())) {
        m_context.reset();
        m_port = port;
        throw PosixError{EIO};
    }
    m_isLost = false;
}

void PhoneSession::LookForHandset() {
    if (m_phone->IsPhoneConnected())
        return;
    ++m_epoch;
    m_isLost = true;
    Connect();
}

} // namespace tools::mount
