#pragma once

#include <string>

#include "services/service_addresses.h"

namespace velmara {

/// Where the first window of this user on this display listens for photos; empty if nowhere.
std::string firstWindowAddress();

/// Opens the window, runs the application until it ends and returns the exit code of the process.
/// From its start on, standard error goes to the log file. `photo` is the path of a file to open
/// first, if not empty.
int runApplication(int argc, char** argv, const std::string& photo = {},
                   const ServiceAddresses& addresses = configuredAddresses());

}  // namespace velmara
