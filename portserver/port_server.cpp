#include "portserver/port_server.h"

#include <mutex>
#include <utility>

#include "portserver/make_port_server.h"

namespace {

std::mutex g_lock;
CaughtServerFactory g_factory; // under g_lock

/// The library's side, with a view from a program: throws here what the view stored in `fault`.
struct FaultThrower {
    template <class Call>
    static auto Pass(const ServerFault& fault, Call call) {
        auto result = call();
        fault.Raise();
        return result;
    }
};

} // namespace

PacketEvents::~PacketEvents() = default;
TaskEvents::~TaskEvents() = default;
PortServer::~PortServer() = default;

void AttachCaughtServer(CaughtServerFactory factory) {
    const std::lock_guard lock(g_lock);
    g_factory.swap(factory);
}

std::shared_ptr<PortServer> MakePortServer() {
    CaughtServerFactory factory;
    {
        const std::lock_guard lock(g_lock);
        factory = g_factory;
    }
    if (!factory)
        return nullptr;
    CaughtServer made = factory();
    made.pFault->Raise();
    if (made.pServer == nullptr)
        return nullptr;
    return std::make_shared<ServerRelay<FaultThrower>>(std::move(made.pServer), std::move(made.pFault));
}
