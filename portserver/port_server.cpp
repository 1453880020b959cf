#include "portserver/port_server.h"

#include <mutex>
#include <utility>

namespace {

std::mutex g_lock;
PortServerFactory g_factory; // under g_lock

} // namespace

PacketEvents::~PacketEvents() = default;
TaskEvents::~TaskEvents() = default;
PortServer::~PortServer() = default;

void AttachPortServer(PortServerFactory factory) {
    const std::lock_guard lock(g_lock);
    g_factory.swap(factory);
}

std::shared_ptr<PortServer> MakePortServer() {
    PortServerFactory factory;
    {
        const std::lock_guard lock(g_lock);
        factory = g_factory;
    }
    return factory ? factory() : nullptr;
}
