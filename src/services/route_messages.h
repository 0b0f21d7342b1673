#pragma once

#include <cstdint>
#include <map>
#include <vector>

struct nlmsghdr;

namespace velmara {

/// Whether an interface carries traffic.
enum class LinkState {
  kDown,     ///< switched off, or its cable is out
  kDormant,  ///< switched on, but it must dial or log in first
  kUp,
};

/// What the kernel says about one route.
struct RouteFacts {
  /// Where it leads.
  enum class Kind {
    kNone,    ///< there is none, or it refuses
    kRemote,  ///< to elsewhere
    kLocal,   ///< to this machine itself
  };
  /// Of this route.
  Kind kind = Kind::kNone;
  /// Whether it goes over a gateway, and the state of the interface.
  bool hasGateway = false;
  LinkState link = LinkState::kDown;
  std::uint32_t metric = 0;  ///< the lower, the rather it is taken
};

/// Interfaces by the kernel's numbers for them.
using Links = std::map<int, LinkState>;

// What one message of rtnetlink says. Of the message its stated length is read, rounded up to four
// bytes as netlink lays messages out, which must be there; what is cut off or makes no sense says
// nothing. Any thread.

/// Adds the interface that a message tells of, if it does.
void addLink(const nlmsghdr& message, Links& links);

/// The route that a message tells of, one of these facts for each of its ways; none if it tells of
/// none.
std::vector<RouteFacts> routesIn(const nlmsghdr& message, const Links& links);

/// Whether a message tells of a default route of the kind that leads somewhere.
bool isDefaultRoute(const nlmsghdr& message);

}  // namespace velmara
