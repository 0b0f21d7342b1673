#include "services/route_messages.h"

#include <gtest/gtest.h>

#include <cstring>
#include <linux/rtnetlink.h>
#include <string>

namespace velmara {
namespace {

template <typename Value>
std::string bytesOf(const Value& value) {
  return {reinterpret_cast<const char*>(&value), sizeof(value)};
}

std::string attribute(unsigned short type, const std::string& payload) {
  const rtattr head{static_cast<unsigned short>(sizeof(rtattr) + payload.size()), type};
  return bytesOf(head) + payload;
}

std::string hop(int interface, const std::string& attributes) {
  const rtnexthop head{static_cast<unsigned short>(sizeof(rtnexthop) + attributes.size()), 0, 0,
                       interface};
  return bytesOf(head) + attributes;
}

// The first bytes of a message, in memory of their own: nothing behind them may be read.
std::vector<RouteFacts> routesInFirst(std::size_t size, const std::string& message) {
  std::vector<char> bytes(message.begin(), message.begin() + static_cast<std::ptrdiff_t>(size));
  auto& header = *reinterpret_cast<nlmsghdr*>(bytes.data());
  header.nlmsg_len = static_cast<std::uint32_t>(size);
  Links links = {{1, LinkState::kUp}, {2, LinkState::kDormant}};
  addLink(header, links);
  EXPECT_EQ(links.size(), 2U);
  isDefaultRoute(header);
  return routesIn(header, links);
}

TEST(RouteMessages, AreTakenAsFarAsTheyGo) {
  rtmsg route{};
  route.rtm_type = RTN_UNICAST;
  nlmsghdr header{};
  header.nlmsg_type = RTM_NEWROUTE;
  const std::string gateway = attribute(RTA_GATEWAY, std::string(4, '\1'));
  const std::string message = bytesOf(header) + bytesOf(route) +
                              attribute(RTA_PRIORITY, bytesOf(100U)) +
                              attribute(RTA_MULTIPATH, hop(1, gateway) + hop(2, ""));
  const auto whole = routesInFirst(message.size(), message);
  ASSERT_EQ(whole.size(), 2U);
  EXPECT_TRUE(whole[0].hasGateway);
  EXPECT_EQ(whole[0].link, LinkState::kUp);
  EXPECT_FALSE(whole[1].hasGateway);
  EXPECT_EQ(whole[1].link, LinkState::kDormant);
  EXPECT_EQ(whole[1].metric, 100U);
  for (std::size_t size = sizeof(header); size < message.size(); size += 4) {
    EXPECT_LE(routesInFirst(size, message).size(), 1U) << size;
  }
  EXPECT_TRUE(routesInFirst(sizeof(header) + sizeof(route) - 4, message).empty());
}

}  // namespace
}  // namespace velmara
