#include "services/reachability.h"

#include <cstring>
#include <netinet/in.h>

#include "platform/log.h"
#include "platform/notification_names.h"
#include "services/rtnetlink.h"

namespace velmara {
namespace {

sockaddr_storage storageOf(const QHostAddress& address) {
  sockaddr_storage storage{};
  if (address.protocol() == QAbstractSocket::IPv4Protocol) {
    sockaddr_in target{};
    target.sin_family = AF_INET;
    target.sin_addr.s_addr = htonl(address.toIPv4Address());
    std::memcpy(&storage, &target, sizeof(target));
  } else {
    sockaddr_in6 target{};
    target.sin6_family = AF_INET6;
    const Q_IPV6ADDR bytes = address.toIPv6Address();
    std::memcpy(&target.sin6_addr, &bytes, sizeof(bytes));
    std::memcpy(&storage, &target, sizeof(target));
  }
  return storage;
}

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

Reachability::Reachability(const ReachabilitySetup& setup) : setup_(setup) {}

Reachability::~Reachability() = default;

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
  auto changes = std::make_unique<RouteChanges>(setup_.timers, [this] { networkChanged(); });
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
  if (lookup_ != nullptr) {
    lookAgain_ = true;
    return;
  }
  lookup_ = std::make_unique<HostLookup>(host_, setup_.resolver,
                                         [this](const std::vector<QHostAddress>& addresses) {
                                           lookup_.reset();
                                           addresses_.clear();
                                           for (const QHostAddress& address : addresses)
                                             addresses_.push_back(storageOf(address));
                                           if (std::exchange(lookAgain_, false)) resolve();
                                           announceIfChanged();
                                         });
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
