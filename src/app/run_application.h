#pragma once

#include "services/service_addresses.h"

namespace velmara {

/// Opens the window, runs the application until it ends and returns the exit code of the process.
/// From its start on, standard error goes to the log file.
int runApplication(int argc, char** argv,
                   const ServiceAddresses& addresses = configuredAddresses());

}  // namespace velmara
