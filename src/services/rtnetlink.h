#pragma once

#include <netinet/in.h>
#include <optional>
#include <sys/socket.h>
#include <vector>

#include "services/route_facts.h"

namespace velmara {

/// The default routes of both families, IPv4 first, of all tables; nothing if the kernel cannot be
/// asked. Asks over rtnetlink and waits for the answer, which takes well under a millisecond on a
/// machine with a desktop's few routes.
std::optional<std::vector<RouteFacts>> defaultRoutes();

/// The route that a packet to an address (AF_INET or AF_INET6) would take; nothing if the kernel
/// cannot be asked.
std::optional<RouteFacts> routeTo(const sockaddr_storage& address);

}  // namespace velmara
