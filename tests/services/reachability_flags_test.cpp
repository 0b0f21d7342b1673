#include <gtest/gtest.h>

#include <set>
#include <string>

#include "services/reachability.h"

namespace velmara {
namespace {

TEST(ReachabilityFlags, MeanTheirStatusByBothRulesAndALetterEach) {
  const struct {
    ReachabilityFlags flags;
    NetworkStatus network, localWiFi;
    const char* letters;
  } rows[] = {
      {0, kNotReachable, kNotReachable, "-- ------"},
      {0x2, kReachableViaWiFi, kNotReachable, "-R ------"},
      {0x1, kNotReachable, kNotReachable, "-- t-----"},
      {0x2 | 0x4, kNotReachable, kNotReachable, "-R -c----"},
      {0x2 | 0x4 | 0x20, kReachableViaWiFi, kNotReachable, "-R -c--D-"},
      {0x2 | 0x4 | 0x8, kReachableViaWiFi, kNotReachable, "-R -cC---"},
      {0x2 | 0x4 | 0x20 | 0x10, kNotReachable, kNotReachable, "-R -c-iD-"},
      {0x2 | 0x20 | 0x10, kReachableViaWiFi, kNotReachable, "-R ---iD-"},
      {0x2 | 0x20000, kReachableViaWWAN, kReachableViaWiFi, "WR ------"},
      {0x2 | 0x4 | 0x20000, kReachableViaWWAN, kReachableViaWiFi, "WR -c----"},
      {0x20000, kNotReachable, kNotReachable, "W- ------"},
      {0x2 | 0x10000, kReachableViaWiFi, kNotReachable, "-R -----l"},
      {0x40000, kNotReachable, kNotReachable, "-- ------"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.letters);
    EXPECT_EQ(statusByNetworkRule(row.flags), row.network);
    EXPECT_EQ(statusByLocalWiFiRule(row.flags), row.localWiFi);
    EXPECT_EQ(reachabilityFlagLine(row.flags, "networkStatusForFlags"),
              std::string("Reachability Flag Status: ") + row.letters + " networkStatusForFlags\n");
  }
  EXPECT_EQ(std::set({kNotReachable, kReachableViaWiFi, kReachableViaWWAN}).size(), 3U);
}

TEST(RouteFacts, TheBestRouteBecomesFlags) {
  using Kind = RouteFacts::Kind;
  const RouteFacts gateway{Kind::kRemote, true, LinkState::kUp, 100};
  const RouteFacts direct{Kind::kRemote, false, LinkState::kUp, 50};
  const RouteFacts later{Kind::kRemote, false, LinkState::kUp, 100};
  const RouteFacts dialling{Kind::kRemote, true, LinkState::kDormant, 1};
  const RouteFacts dead{Kind::kRemote, false, LinkState::kDown, 0};
  const std::pair<std::vector<RouteFacts>, ReachabilityFlags> cases[] = {
      {{}, 0},
      {{{Kind::kNone, false, LinkState::kUp, 0}}, 0},
      {{{Kind::kLocal, false, LinkState::kUp, 0}}, 0x2 | 0x10000 | 0x20000},
      {{gateway}, 0x2},
      {{direct}, 0x2 | 0x20000},
      {{dead}, 0},
      {{dialling}, 0x2 | 0x4},
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
