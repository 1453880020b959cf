// Making a view of the attached port server.
#pragma once

#include <memory>

#include "portserver/port_server.h"

/// MakePortServer makes a view with the attached factory; null without one. Runs on the automation thread.
std::shared_ptr<PortServer> MakePortServer();
