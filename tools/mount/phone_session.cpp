#include "mount/phone_session.h"

#include <algorithm>
#include <vector>

namespace tools::mount {
namespace {

constexpr unsigned short kAnyPort = QLib_ResourceManager::kAnyPort;
constexpr unsigned short kMostPorts = 256;

bool PortExists(unsigned short port) {
    std::vector<unsigned short> ports(kMostPorts);
    unsigned short count = kMostPorts;
    if (!QLib_ResourceManager::GetAllPortList(&count, ports.data()))
        return false;
    return std::find(ports.begin(), ports.begin() + count, port) != ports.begin() + count;
}

} // namespace

bool PhoneSession::Open(unsigned short port) {
    m_context.reset(QLib_ResourceManager::CreateContext(port));
    m_phone = QLib_ResourceManager::GetDiag_FTM(m_context.get());
    if (m_phone)
        QLib_ResourceManager::GetComPortNumber(m_context.get(), &m_port);
    return m_phone && m_phone->OpenPort();
}

void PhoneSession::RequireHandset() {
    const auto fail = [](const std::string& reason) { throw Failure(reason, Status::NoHandset); };
    const bool isOpen = Open(m_wantedPort);
    const std::string name = "COM" + std::to_string(m_port);
    if (!m_phone)
        fail("no handset answers; is one attached and switched on?");
    if (!isOpen && !PortExists(m_port))
        fail("there is no port " + name + "; is a handset attached?");
    if (!isOpen)
        fail(name + " cannot be opened; perhaps another program holds it, or you may not open it");
    if (!m_phone->IsPhoneConnected())
        fail("the handset on " + name + " does not answer; is it switched on?");
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
