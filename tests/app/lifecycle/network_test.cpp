// The delegate in a network of its own; skipped where there is none to be had.
#include <gtest/gtest.h>

#include "app/lifecycle/launch_fixture.h"
#include "support/network_namespace.h"

namespace velmara {
namespace {

using testing_support::ip;
using testing_support::LaunchTest;

TEST_F(LaunchTest, FollowsTheNetwork) {
  const std::string reason = testing_support::enterNewNetwork();
  if (!reason.empty()) GTEST_SKIP() << reason;
  launch();
  EXPECT_FALSE(delegate().isInternetAvailable);
  EXPECT_GE(logged("Internet Available : NO"), 0);
  ip("link add v0 type veth peer name v1");
  ip("link set v1 up");
  ip("link set v0 up");
  ip("addr add 10.9.0.2/24 dev v0");
  struct Case {
    const char* change;
    NetworkStatus status;
  };
  for (const auto& [change, status] : std::initializer_list<Case>{
           {"route add default via 10.9.0.1 dev v0", kReachableViaWiFi},
           {"route replace default dev v0", kReachableViaWWAN},
           {"link set v0 down", kNotReachable},
       }) {
    ip(change);
    EXPECT_TRUE(waitUntil([&, expected = status] { return delegate().networkStatus == expected; }))
        << change;
    EXPECT_EQ(delegate().isInternetAvailable, status != kNotReachable) << change;
    EXPECT_EQ(delegate().isInternetAvailableUsingWiFi, status == kReachableViaWiFi) << change;
    EXPECT_EQ(delegate().isInternetAvailableUsingDataProvider, status == kReachableViaWWAN);
    EXPECT_FALSE(delegate().connectionRequired);
  }
  EXPECT_GE(logged("Internet Available : YES"), 0);
}

}  // namespace
}  // namespace velmara
