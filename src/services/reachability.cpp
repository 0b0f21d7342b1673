#include "services/reachability.h"

#include <cstring>
#include <netdb.h>
#include <netinet/in.h>
#include <utility>

#include "platform/dispatch.h"
#include "platform/log.h"
#include "platform/notification_center.h"

namespace velmara {
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

sockaddr_in addressOf(std::uint32_t ipv4) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(ipv4);
  return address;
}

}  // namespace

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
  const sockaddr_in zero = addressOf(INADDR_ANY);
  return reachabilityWithAddress(reinterpret_cast<const sockaddr&>(zero), sizeof(zero), setup);
}

std::shared_ptr<Reachability> Reachability::reachabilityForLocalWiFi(
    const ReachabilitySetup& setup) {
  constexpr std::uint32_t kLinkLocalNetwork = 0xA9FE0000;  // 169.254.0.0
  const sockaddr_in linkLocal = addressOf(kLinkLocalNetwork);
  auto monitor = reachabilityWithAddress(reinterpret_cast<const sockaddr&>(linkLocal),
                                         sizeof(linkLocal), setup);
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
  return (readFlags().value_or(0) & reachability_flags::kConnectionRequired) != 0;
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
    const auto routes = defaultRoutes();
    if (!routes) return std::nullopt;
    return flagsOfBestRoute(*routes);
  }
  std::vector<RouteFacts> routes;
  for (const sockaddr_storage& address : addresses_) {
    if (const auto route = routeTo(address)) routes.push_back(*route);
  }
  if (routes.empty()) return std::nullopt;
  return flagsOfBestRoute(routes);
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
