// Making a view of the attached port server.
#pragma once

#include <memory>

#include "portserver/port_server.h"

/// MakePortServer makes a view by means of the attached factory; null without one. Runs on the thread that
/// is set up for automation.
std::shared_ptr<PortServer> MakePortServer();
