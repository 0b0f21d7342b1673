#include "services/route_messages.h"

#include <libmnl/libmnl.h>
#include <linux/if.h>
#include <linux/rtnetlink.h>

namespace velmara {
namespace {

using Attributes = std::map<int, const nlattr*>;

int keepAttribute(const nlattr* attribute, void* attributes) {
  (*static_cast<Attributes*>(attributes))[mnl_attr_get_type(attribute)] = attribute;
  return MNL_CB_OK;
}

// The header that a message of a type begins with; null for another message, or one too short.
template <typename Header>
const Header* headerOf(const nlmsghdr& message, unsigned short type) {
  const bool isOne =
      message.nlmsg_type == type && message.nlmsg_len >= NLMSG_LENGTH(sizeof(Header));
  return isOne ? static_cast<const Header*>(mnl_nlmsg_get_payload(&message)) : nullptr;
}

// The attributes of a message by their numbers.
template <typename Header>
Attributes attributesOf(const nlmsghdr& message) {
  Attributes attributes;
  mnl_attr_parse(&message, sizeof(Header), keepAttribute, &attributes);
  return attributes;
}

// Those of one hop of a route over several ways.
Attributes attributesOf(const rtnexthop& hop) {
  Attributes attributes;
  mnl_attr_parse_payload(RTNH_DATA(&hop), hop.rtnh_len - RTNH_LENGTH(0), keepAttribute,
                         &attributes);
  return attributes;
}

bool hasGateway(const Attributes& attributes) {
  return attributes.count(RTA_GATEWAY) + attributes.count(RTA_VIA) > 0;
}

// The number of a type; 0 if there is none of its size.
template <typename Number>
Number numberIn(const Attributes& attributes, int type) {
  const auto found = attributes.find(type);
  const bool isThere =
      found != attributes.end() && mnl_attr_get_payload_len(found->second) >= sizeof(Number);
  return isThere ? *static_cast<const Number*>(mnl_attr_get_payload(found->second)) : Number{0};
}

LinkState stateOf(const ifinfomsg& link, const Attributes& attributes) {
  if ((link.ifi_flags & IFF_UP) == 0) return LinkState::kDown;
  if ((link.ifi_flags & IFF_RUNNING) != 0) return LinkState::kUp;
  // The operational state says "dormant" even where the flags do not.
  constexpr std::uint8_t kDormant = 5;  // IF_OPER_DORMANT of RFC 2863
  const bool isDormant = (link.ifi_flags & IFF_DORMANT) != 0 ||
                         numberIn<std::uint8_t>(attributes, IFLA_OPERSTATE) == kDormant;
  return isDormant ? LinkState::kDormant : LinkState::kDown;
}

LinkState stateOf(const Links& links, int index) {
  const auto found = links.find(index);
  return found != links.end() ? found->second : LinkState::kDown;
}

RouteFacts::Kind kindOf(unsigned char type) {
  if (type == RTN_LOCAL) return RouteFacts::Kind::kLocal;
  // The others are unreachable, blackhole, prohibit and throw.
  const bool leadsElsewhere =
      type == RTN_UNICAST || type == RTN_BROADCAST || type == RTN_ANYCAST || type == RTN_MULTICAST;
  return leadsElsewhere ? RouteFacts::Kind::kRemote : RouteFacts::Kind::kNone;
}

}  // namespace

void addLink(const nlmsghdr& message, Links& links) {
  if (const auto* link = headerOf<ifinfomsg>(message, RTM_NEWLINK)) {
    links[link->ifi_index] = stateOf(*link, attributesOf<ifinfomsg>(message));
  }
}

std::vector<RouteFacts> routesIn(const nlmsghdr& message, const Links& links) {
  const auto* route = headerOf<rtmsg>(message, RTM_NEWROUTE);
  if (route == nullptr) return {};
  const auto attributes = attributesOf<rtmsg>(message);
  RouteFacts facts;
  facts.kind = kindOf(route->rtm_type);
  facts.metric = numberIn<std::uint32_t>(attributes, RTA_PRIORITY);
  if (const auto ways = attributes.find(RTA_MULTIPATH); ways != attributes.end()) {
    std::vector<RouteFacts> all;
    const auto* hop = static_cast<const rtnexthop*>(mnl_attr_get_payload(ways->second));
    int left = mnl_attr_get_payload_len(ways->second);
    // RTNH_OK reads the hop's length before it looks whether there is one.
    for (; left >= static_cast<int>(sizeof(*hop)) && RTNH_OK(hop, left);
         left -= NLMSG_ALIGN(hop->rtnh_len), hop = RTNH_NEXT(hop)) {
      facts.link = stateOf(links, hop->rtnh_ifindex);
      facts.hasGateway = hasGateway(attributesOf(*hop));
      all.push_back(facts);
    }
    return all;
  }
  facts.hasGateway = hasGateway(attributes);
  facts.link = stateOf(links, static_cast<int>(numberIn<std::uint32_t>(attributes, RTA_OIF)));
  return {facts};
}

bool isDefaultRoute(const nlmsghdr& message) {
  const auto* route = headerOf<rtmsg>(message, RTM_NEWROUTE);
  return route != nullptr && route->rtm_dst_len == 0 && route->rtm_type == RTN_UNICAST &&
         (route->rtm_flags & (RTM_F_CLONED | RTNH_F_DEAD)) == 0;
}

}  // namespace velmara
