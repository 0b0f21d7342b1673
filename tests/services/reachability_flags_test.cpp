#include <gtest/gtest.h>

#include <array>

#include "services/reachability.h"

namespace velmara {
namespace {

TEST(ReachabilityFlags, BothRules) {
  struct Case {
    ReachabilityFlags flags;
    NetworkStatus network;
    NetworkStatus localWiFi;
  };
  for (const auto& [flags, network, localWiFi] : std::initializer_list<Case>{
           {0, kNotReachable, kNotReachable},
           {0x2, kReachableViaWiFi, kNotReachable},
           {0x2 | 0x4, kNotReachable, kNotReachable},
           {0x2 | 0x4 | 0x20, kReachableViaWiFi, kNotReachable},
           {0x2 | 0x4 | 0x8, kReachableViaWiFi, kNotReachable},
           {0x2 | 0x4 | 0x20 | 0x10, kNotReachable, kNotReachable},
           {0x2 | 0x20 | 0x10, kReachableViaWiFi, kNotReachable},
           {0x2 | 0x20000, kReachableViaWWAN, kReachableViaWiFi},
           {0x2 | 0x4 | 0x20000, kReachableViaWWAN, kReachableViaWiFi},
           {0x20000, kNotReachable, kNotReachable},
       }) {
    EXPECT_EQ(statusByNetworkRule(flags), network) << std::hex << flags;
    EXPECT_EQ(statusByLocalWiFiRule(flags), localWiFi) << std::hex << flags;
  }
}

TEST(ReachabilityFlags, LogLineHasALetterForEachBit) {
  const std::pair<ReachabilityFlags, std::string_view> cases[] = {
      {0, "-- ------"},       {0x20000, "W- ------"}, {0x2, "-R ------"},     {0x1, "-- t-----"},
      {0x4, "-- -c----"},     {0x8, "-- --C---"},     {0x10, "-- ---i--"},    {0x20, "-- ----D-"},
      {0x10000, "-- -----l"}, {0x3003F, "WR tcCiDl"}, {0x40000, "-- ------"},
  };
  for (const auto& [flags, letters] : cases) {
    EXPECT_EQ(reachabilityFlagLine(flags, "networkStatusForFlags"),
              "Reachability Flag Status: " + std::string(letters) + " networkStatusForFlags\n");
  }
}

TEST(RouteFacts, BecomeFlags) {
  using Kind = RouteFacts::Kind;
  const std::pair<RouteFacts, ReachabilityFlags> cases[] = {
      {{Kind::kNone, false, LinkState::kUp, 0}, 0},
      {{Kind::kRemote, true, LinkState::kUp, 0}, 0x2},
      {{Kind::kRemote, false, LinkState::kUp, 0}, 0x2 | 0x20000},
      {{Kind::kRemote, true, LinkState::kDown, 0}, 0},
      {{Kind::kRemote, true, LinkState::kDormant, 0}, 0x2 | 0x4},
      {{Kind::kLocal, false, LinkState::kUp, 0}, 0x2 | 0x10000 | 0x20000},
  };
  for (const auto& [facts, flags] : cases) EXPECT_EQ(flagsOfBestRoute(std::array{facts}), flags);
}

TEST(RouteFacts, TheBestRouteDecides) {
  using Kind = RouteFacts::Kind;
  const RouteFacts gateway{Kind::kRemote, true, LinkState::kUp, 100};
  const RouteFacts direct{Kind::kRemote, false, LinkState::kUp, 50};
  const RouteFacts later{Kind::kRemote, false, LinkState::kUp, 100};
  const RouteFacts dialling{Kind::kRemote, true, LinkState::kDormant, 1};
  const RouteFacts dead{Kind::kRemote, false, LinkState::kDown, 0};
  const std::pair<std::vector<RouteFacts>, ReachabilityFlags> cases[] = {
      {{}, 0},
      {{dead}, 0},
      {{dead, gateway}, 0x2},
      {{gateway, direct}, 0x2 | 0x20000},
      {{gateway, later}, 0x2},
      {{dialling, gateway}, 0x2},
      {{dead, dialling}, 0x2 | 0x4},
  };
  for (const auto& [routes, flags] : cases) EXPECT_EQ(flagsOfBestRoute(routes), flags);
}

}  // namespace
}  // namespace velmara
