#include "services/route_facts.h"

namespace velmara {

using namespace reachability_flags;  // NOLINT(google-build-using-namespace): the bits

ReachabilityFlags flagsOfRoute(const RouteFacts& route) {
  if (route.kind == RouteFacts::Kind::kNone || route.link == LinkState::kDown) return 0;
  ReachabilityFlags flags = kReachable;
  if (!route.hasGateway) flags |= kIsDirect;
  if (route.kind == RouteFacts::Kind::kLocal) flags |= kIsLocalAddress;
  if (route.link == LinkState::kDormant) flags |= kConnectionRequired;
  return flags;
}

ReachabilityFlags flagsOfBestRoute(std::span<const RouteFacts> routes) {
  const RouteFacts* best = nullptr;
  for (const RouteFacts& route : routes) {
    if (flagsOfRoute(route) == 0) continue;
    const bool better = best == nullptr ||
                        (route.link == LinkState::kUp && best->link == LinkState::kDormant) ||
                        (route.link == best->link && route.metric < best->metric);
    if (better) best = &route;
  }
  return best != nullptr ? flagsOfRoute(*best) : 0;
}

}  // namespace velmara
