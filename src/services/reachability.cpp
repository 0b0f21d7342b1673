#include "services/reachability.h"

#include <cstring>
#include <netdb.h>
#include <netinet/in.h>
#include <utility>

#include "platform/dispatch.h"
#include "platform/log.h"
#include "platform/notification_center.h"

namespace velmara {

using namespace reachability_flags;  // NOLINT(google-build-using-namespace): the bits

namespace {

bool isAllZero(const sockaddr_storage& address) {
  if (address.ss_family == AF_INET) {
    sockaddr_in target{};
    std::memcpy(&target, &address, sizeof(target));
    return target.sin_addr.s_addr == INADDR_ANY;
  }
  sockaddr_in6 target{};
  std::memcpy(&target, &address, sizeof(target));
  return IN6_IS_ADDR_UNSPECIFIED(&target.sin6_addr);
}

bool canBeHostName(const std::string& name) {
  constexpr std::size_t kLongestName = 254;  // RFC 1035, with a dot at the end.
  return !name.empty() && name.size() <= kLongestName && name.find('\0') == std::string::npos;
}

std::shared_ptr<Reachability> monitorOf(std::uint32_t ipv4, const ReachabilitySetup& setup) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(ipv4);
  return Reachability::reachabilityWithAddress(reinterpret_cast<const sockaddr&>(address),
                                               sizeof(address), setup);
}

ReachabilityFlags flagsOfRoute(const RouteFacts& route) {
  if (route.kind == RouteFacts::Kind::kNone || route.link == LinkState::kDown) return 0;
  ReachabilityFlags flags = kReachable;
  if (!route.hasGateway) flags |= kIsDirect;
  if (route.kind == RouteFacts::Kind::kLocal) flags |= kIsLocalAddress;
  if (route.link == LinkState::kDormant) flags |= kConnectionRequired;
  return flags;
}

}  // namespace

std::string reachabilityFlagLine(ReachabilityFlags flags, std::string_view rule) {
  const auto letter = [flags](ReachabilityFlags bit, char shown) {
    return (flags & bit) != 0 ? shown : '-';
  };
  std::string line = "Reachability Flag Status: ";
  line.append({letter(kIsDirect, 'W'), letter(kReachable, 'R'), ' '});
  line.append({letter(kTransientConnection, 't'), letter(kConnectionRequired, 'c'),
               letter(kConnectionOnTraffic, 'C'), letter(kInterventionRequired, 'i'),
               letter(kConnectionOnDemand, 'D'), letter(kIsLocalAddress, 'l')});
  return line.append(" ").append(rule).append("\n");
}

NetworkStatus statusByNetworkRule(ReachabilityFlags flags) {
  if ((flags & kReachable) == 0) return kNotReachable;
  if ((flags & kIsDirect) != 0) return kReachableViaWWAN;
  const bool connectsByItself = (flags & (kConnectionOnTraffic | kConnectionOnDemand)) != 0;
  if (connectsByItself && (flags & kInterventionRequired) == 0) return kReachableViaWiFi;
  return (flags & kConnectionRequired) == 0 ? kReachableViaWiFi : kNotReachable;
}

NetworkStatus statusByLocalWiFiRule(ReachabilityFlags flags) {
  constexpr ReachabilityFlags kBoth = kReachable | kIsDirect;
  return (flags & kBoth) == kBoth ? kReachableViaWiFi : kNotReachable;
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

std::vector<sockaddr_storage> systemAddressesOf(const std::string& host) {
  addrinfo hints{};
  hints.ai_socktype = SOCK_STREAM;
  hints.ai_flags = AI_ADDRCONFIG;
  addrinfo* found = nullptr;
  if (::getaddrinfo(host.c_str(), nullptr, &hints, &found) != 0) return {};
  std::vector<sockaddr_storage> addresses;
  for (const addrinfo* entry = found; entry != nullptr; entry = entry->ai_next) {
    std::memcpy(&addresses.emplace_back(), entry->ai_addr, entry->ai_addrlen);
  }
  ::freeaddrinfo(found);
  return addresses;
}

std::shared_ptr<Reachability> Reachability::reachabilityWithHostName(
    const std::string& name, const ReachabilitySetup& setup) {
  if (!canBeHostName(name)) return nullptr;
  std::shared_ptr<Reachability> monitor(new Reachability(setup));
  monitor->host_ = name;
  monitor->resolve();
  return monitor;
}

std::shared_ptr<Reachability> Reachability::reachabilityWithAddress(
    const sockaddr& address, socklen_t length, const ReachabilitySetup& setup) {
  const bool fits = (address.sa_family == AF_INET && length == sizeof(sockaddr_in)) ||
                    (address.sa_family == AF_INET6 && length == sizeof(sockaddr_in6));
  if (!fits) return nullptr;
  sockaddr_storage storage{};
  std::memcpy(&storage, &address, length);
  std::shared_ptr<Reachability> monitor(new Reachability(setup));
  if (isAllZero(storage)) {
    monitor->isInternet_ = true;
  } else {
    monitor->addresses_.push_back(storage);
  }
  return monitor;
}

std::shared_ptr<Reachability> Reachability::reachabilityForInternetConnection(
    const ReachabilitySetup& setup) {
  return monitorOf(INADDR_ANY, setup);
}

std::shared_ptr<Reachability> Reachability::reachabilityForLocalWiFi(
    const ReachabilitySetup& setup) {
  constexpr std::uint32_t kLinkLocalNetwork = 0xA9FE0000;  // 169.254.0.0
  auto monitor = monitorOf(kLinkLocalNetwork, setup);
  monitor->localWiFiRef = true;
  return monitor;
}

bool Reachability::startNotifier() {
  if (changes_ != nullptr) return true;
  auto changes = std::make_unique<RouteChanges>([this] { networkChanged(); });
  if (!changes->isListening()) return false;
  changes_ = std::move(changes);
  lastFlags_ = readFlags();
  return true;
}

void Reachability::stopNotifier() {
  changes_.reset();
}

NetworkStatus Reachability::currentReachabilityStatus() {
  const std::optional<ReachabilityFlags> flags = readFlags();
  if (!flags) return kNotReachable;
  return localWiFiRef ? localWiFiStatusForFlags(*flags) : networkStatusForFlags(*flags);
}

bool Reachability::connectionRequired() {
  return (readFlags().value_or(0) & kConnectionRequired) != 0;
}

NetworkStatus Reachability::networkStatusForFlags(ReachabilityFlags flags) {
  logLine(reachabilityFlagLine(flags, "networkStatusForFlags"));
  return statusByNetworkRule(flags);
}

NetworkStatus Reachability::localWiFiStatusForFlags(ReachabilityFlags flags) {
  logLine(reachabilityFlagLine(flags, "localWiFiStatusForFlags"));
  return statusByLocalWiFiRule(flags);
}

std::optional<ReachabilityFlags> Reachability::readFlags() const {
  if (isInternet_) {
    const auto defaults = defaultRoutes();
    return defaults ? std::optional(flagsOfBestRoute(*defaults)) : std::nullopt;
  }
  std::vector<RouteFacts> routes;
  for (const sockaddr_storage& address : addresses_) {
    if (const auto route = routeTo(address)) routes.push_back(*route);
  }
  return routes.empty() ? std::nullopt : std::optional(flagsOfBestRoute(routes));
}

// One lookup at a time; a change during it asks for one more after it.
void Reachability::resolve() {
  lookAgain_ = isResolving_;
  if (std::exchange(isResolving_, true)) return;
  globalQueue().async([host = host_, resolver = setup_.resolver, watched = weak_from_this()] {
    mainQueue().async([watched, addresses = resolver(host)] {
      if (const auto monitor = watched.lock()) monitor->resolved(addresses);
    });
  });
}

void Reachability::resolved(std::vector<sockaddr_storage> addresses) {
  isResolving_ = false;
  addresses_ = std::move(addresses);
  if (lookAgain_) resolve();
  announceIfChanged();
}

void Reachability::networkChanged() {
  if (!host_.empty()) resolve();
  announceIfChanged();
}

void Reachability::announceIfChanged() {
  if (changes_ == nullptr) return;
  const std::optional<ReachabilityFlags> flags = readFlags();
  if (flags == lastFlags_) return;
  lastFlags_ = flags;
  // An observer may let go of the last reference.
  const std::shared_ptr<Reachability> self = shared_from_this();
  setup_.center.post(notifications::kNetworkReachabilityChanged, self);
}

}  // namespace velmara
