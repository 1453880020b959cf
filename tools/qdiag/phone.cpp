#include "qdiag/phone.h"

#include <algorithm>
#include <cstdio>

namespace tools::qdiag {
namespace {

constexpr unsigned short kAnyPort = QLib_ResourceManager::kAnyPort;
constexpr unsigned short kMostPorts = 256;

std::string ComName(unsigned port) {
    return "COM" + std::to_string(port);
}

void RequirePort(unsigned short port) {
    const std::vector<unsigned short> ports = AllPorts();
    if (std::ranges::find(ports, port) == ports.end())
        throw Failure("there is no port " + ComName(port) + "; qdiag ports lists the ports",
                      Status::NoHandset);
}

} // namespace

std::vector<unsigned short> AllPorts() {
    std::vector<unsigned short> ports(kMostPorts);
    unsigned short count = kMostPorts;
    if (!QLib_ResourceManager::GetAllPortList(&count, ports.data()))
        throw Failure("the list of serial ports cannot be read", Status::NoHandset);
    ports.resize(count);
    return ports;
}

void Phone::Closing::operator()(void* context) const {
    QLIB_DisconnectPort(context);
}

Phone::Phone(const Job& job) {
    const auto wanted = static_cast<unsigned short>(job.Number("--port", 255, kAnyPort));
    const unsigned long timeout = job.Number("--timeout", 3600000, 0);
    if (wanted != kAnyPort)
        RequirePort(wanted);
    m_context.reset(QLib_ResourceManager::CreateContext(wanted));
    m_phone = QLib_ResourceManager::GetDiag_FTM(m_context.get());
    if (m_phone == nullptr)
        throw Failure("no handset answers on any serial port; is one attached and switched on?",
                      Status::NoHandset);
    QLib_ResourceManager::GetComPortNumber(m_context.get(), &m_port);
    if (!m_phone->OpenPort())
        throw Failure(ComName(m_port) +
                          " cannot be opened; another program may be using it, or you may lack permission",
                      Status::NoHandset);
    if (!Answers())
        throw Failure("no handset answers on " + ComName(m_port), Status::NoHandset);
    if (job.Has("--timeout"))
        m_phone->ConfigureTimeOut(QMSL_TimeOut_SyncRequest, static_cast<DWORD>(timeout));
}

Failure Phone::NoResponse(const std::string& what) const {
    const double seconds = m_phone->GetTimeOut(QMSL_TimeOut_SyncRequest) / 1000.0;
    char limit[32];
    std::snprintf(limit, sizeof limit, "%g s", seconds);
    return Failure(Answers()
                       ? "the phone sent no usable response to the request for " + what + " within " + limit
                       : "the handset stopped answering during the request for " + what);
}

} // namespace tools::qdiag
