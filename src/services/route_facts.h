#pragma once

#include <cstdint>
#include <span>

#include "services/reachability_flags.h"

namespace velmara {

/// Whether an interface carries traffic.
enum class LinkState {
  kDown,     ///< switched off, or its cable is out
  kDormant,  ///< switched on, but it must dial or log in first
  kUp,
};

/// What the kernel says about one route.
struct RouteFacts {
  enum class Kind {
    kNone,    ///< there is none, or it refuses
    kRemote,  ///< to elsewhere
    kLocal,   ///< to this machine itself
  };
  Kind kind = Kind::kNone;
  bool hasGateway = false;
  LinkState link = LinkState::kDown;
  std::uint32_t metric = 0;  ///< the lower, the rather it is taken
};

/// Reachable over an interface that is up; direct without a gateway; local for the machine's own
/// address; with a connection required over an interface that is dormant.
ReachabilityFlags flagsOfRoute(const RouteFacts& route);

/// The flags of the route that traffic would take: among those over an interface that is up the one
/// of the lowest metric, the first of equal ones; those over dormant ones only if there is no
/// other.
ReachabilityFlags flagsOfBestRoute(std::span<const RouteFacts> routes);

}  // namespace velmara
