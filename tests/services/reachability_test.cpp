#include "services/reachability.h"

#include <gtest/gtest.h>

#include <arpa/inet.h>
#include <filesystem>
#include <map>
#include <netinet/in.h>

#include "platform/notification_center.h"
#include "support/event_loop.h"
#include "support/network_namespace.h"
#include "support/recorded_log.h"

namespace velmara {
namespace {

using namespace testing_support;

// A cable between two interfaces, both ends up; and a way to the internet by it.
const std::string kPlugIn =
    "link add v0 type veth peer name v1\nlink set v1 up\nlink set v0 up\n"
    "addr add 10.9.0.2/24 dev v0\n";
const std::string kGateway = "route add default via 10.9.0.1 dev v0\n";

class ReachabilityTest : public testing::Test {
 protected:
  void SetUp() override {
    const std::string reason = enterNewNetwork();
    if (!reason.empty()) GTEST_SKIP() << reason;
    token_ = center_.addObserver(
        notifications::kNetworkReachabilityChanged, [this](const Notification& note) {
          ++changes_;
          object_ = std::any_cast<std::shared_ptr<Reachability>>(note.object);
        });
  }

  std::shared_ptr<Reachability> internet() {
    return Reachability::reachabilityForInternetConnection(setup_);
  }
  // "internet", "wifi" or an address.
  std::shared_ptr<Reachability> monitorOf(const std::string& target) {
    if (target == "internet") return internet();
    if (target == "wifi") return Reachability::reachabilityForLocalWiFi(setup_);
    sockaddr_in v4{};
    v4.sin_family = AF_INET;
    if (::inet_pton(AF_INET, target.c_str(), &v4.sin_addr) == 1) {
      return Reachability::reachabilityWithAddress(reinterpret_cast<const sockaddr&>(v4),
                                                   sizeof(v4), setup_);
    }
    sockaddr_in6 v6{};
    v6.sin6_family = AF_INET6;
    EXPECT_EQ(::inet_pton(AF_INET6, target.c_str(), &v6.sin6_addr), 1);
    return Reachability::reachabilityWithAddress(reinterpret_cast<const sockaddr&>(v6), sizeof(v6),
                                                 setup_);
  }

  // What is changed one after another, and what the monitor of a target says then and logs.
  struct Step {
    std::string change;
    const char* target;
    NetworkStatus status;
    const char* letters;
  };
  void follow(const std::vector<Step>& steps) {
    std::map<std::string, std::shared_ptr<Reachability>> monitors;
    for (const Step& step : steps) {
      if (!step.change.empty()) ipBatch(step.change);
      auto& monitor = monitors[step.target];
      if (!monitor) monitor = monitorOf(step.target);
      const std::string rule = std::string_view(step.target) == "wifi" ? "localWiFi" : "network";
      const std::string line = "Reachability Flag Status: " + std::string(step.letters) + " " +
                               rule + "StatusForFlags\n";
      // The kernel takes up to a second to know that a cable is in.
      EXPECT_TRUE(testing_support::runUntil([&] {
        return monitor->currentReachabilityStatus() == step.status && log_.lines().back() == line;
      })) << step.change
          << step.target << ": " << log_.lines().back();
    }
  }

  NotificationCenter center_;
  ReachabilitySetup setup_{.center = center_};
  int changes_ = 0;
  std::shared_ptr<Reachability> object_;
  const RecordedLog log_;
  NotificationCenter::Token token_;
};

TEST_F(ReachabilityTest, FollowsTheRoutesOfItsTarget) {
  follow({
      {"", "internet", kNotReachable, "-- ------"},
      {"", "wifi", kNotReachable, "-- ------"},
      {kPlugIn, "internet", kNotReachable, "-- ------"},  // No default route yet.
      {kGateway, "internet", kReachableViaWiFi, "-R ------"},
      {"", "wifi", kNotReachable, "-R ------"},
      {"", "192.0.2.1", kReachableViaWiFi, "-R ------"},
      {"", "10.9.0.77", kReachableViaWWAN, "WR ------"},
      {"", "10.9.0.2", kReachableViaWWAN, "WR -----l"},
      {"", "127.0.0.1", kReachableViaWWAN, "WR -----l"},
      {"", "2001:db8::1", kNotReachable, "-- ------"},
      {"addr add 169.254.7.7/16 dev v0", "wifi", kReachableViaWiFi, "WR ------"},
      // The gateway is lost, the cable out and in again, the interface off.
      {"route replace default dev v0", "internet", kReachableViaWWAN, "WR ------"},
      {"link set v1 down", "internet", kNotReachable, "-- ------"},
      {"link set v1 up", "internet", kReachableViaWWAN, "WR ------"},
      {"link set v0 down", "internet", kNotReachable, "-- ------"},
      // A route that refuses, several ways, and a gateway of the other family.
      {"link set v0 up\nroute add unreachable default metric 5", "internet", kNotReachable,
       "-- ------"},
      {"route add default nexthop via 10.9.0.1 dev v0 nexthop via 10.9.0.3 dev v0", "internet",
       kReachableViaWiFi, "-R ------"},
      {"route replace default via inet6 fe80::1 dev v0", "internet", kReachableViaWiFi,
       "-R ------"},
  });
}

TEST_F(ReachabilityTest, IPv6AloneIsTheInternetToo) {
  if (!std::filesystem::exists("/proc/sys/net/ipv6")) GTEST_SKIP() << "the kernel has no IPv6";
  follow(
      {{kPlugIn + "addr add 2001:db8::2/64 dev v0 nodad", "internet", kNotReachable, "-- ------"},
       {"route add default via 2001:db8::1 dev v0", "internet", kReachableViaWiFi, "-R ------"},
       {"", "::", kReachableViaWiFi, "-R ------"},
       {"", "2001:db8:1::1", kReachableViaWiFi, "-R ------"},
       {"", "10.1.2.3", kNotReachable, "-- ------"}});
}

TEST_F(ReachabilityTest, ADormantInterfaceRequiresAConnection) {
  ipBatch(kPlugIn);
  ip("link set v1 down");
  ip("link set v0 mode dormant");
  ip("link set v1 up");
  ipBatch(kGateway);
  const auto monitor = internet();
  // The kernel takes a moment to see the cable.
  EXPECT_TRUE(runUntil([&] { return monitor->connectionRequired(); }));
  follow({{"", "internet", kNotReachable, "-R -c----"}});
  ip("link set v0 mode default");
  ip("link set v1 down");
  ip("link set v1 up");
  EXPECT_TRUE(runUntil([&] { return monitor->currentReachabilityStatus() == kReachableViaWiFi; }));
  EXPECT_FALSE(monitor->connectionRequired());
}

TEST_F(ReachabilityTest, AnnouncesChangesOnlyWhileTheNotifierRuns) {
  const auto monitor = internet();
  ASSERT_TRUE(monitor->startNotifier());
  ASSERT_TRUE(monitor->startNotifier());
  ipBatch(kPlugIn + kGateway);
  ASSERT_TRUE(runUntil([&] { return changes_ == 1; }));
  EXPECT_EQ(object_, monitor);
  EXPECT_EQ(object_->currentReachabilityStatus(), kReachableViaWiFi);
  ipBatch("route del default");
  ASSERT_TRUE(runUntil([&] { return changes_ == 2; }));
  monitor->stopNotifier();
  ipBatch(kGateway);
  // Another one sees it, and may be let go of by its observer.
  auto other = internet();
  ASSERT_TRUE(other->startNotifier());
  const auto token =
      center_.addObserver(notifications::kNetworkReachabilityChanged, [&](const Notification&) {
        other.reset();
        object_.reset();
      });
  ipBatch("route del default");
  EXPECT_TRUE(runUntil([&] { return other == nullptr; }));
  EXPECT_EQ(changes_, 3);
}

TEST_F(ReachabilityTest, AThousandChangesInASecondAreFewAnnouncements) {
  ipBatch(kPlugIn + kGateway);
  const auto monitor = internet();
  ASSERT_TRUE(monitor->startNotifier());
  std::string lines;
  for (int count = 0; count < 1000; ++count) {
    lines += count % 2 == 0 ? "route del default\n" : "route add default dev v0\n";
  }
  const auto descriptors = [] {
    const std::filesystem::directory_iterator all("/proc/self/fd");
    return std::distance(begin(all), end(all));
  };
  const auto before = descriptors();
  QElapsedTimer taken;
  taken.start();
  // Half of them while the event loop does not run, half while it does.
  ipBatch(lines);
  std::atomic<bool> isDone = false;
  std::thread other([&] {
    ipBatch(lines + "route del default\n");
    isDone = true;
  });
  EXPECT_TRUE(runUntil([&] { return isDone && changes_ >= 1; }));
  other.join();
  EXPECT_EQ(monitor->currentReachabilityStatus(), kNotReachable);
  EXPECT_LE(changes_, 2 + taken.elapsed() / 100);
  EXPECT_EQ(descriptors(), before);
}

TEST_F(ReachabilityTest, AHostIsResolvedFirstAndAgainWhenTheNetworkChanges) {
  std::atomic<int> questions = 0;
  setup_.resolver = [&](const std::string& host) {
    EXPECT_EQ(host, "service.test");
    std::vector<sockaddr_storage> found(++questions == 1 ? 0 : 1);
    for (sockaddr_storage& storage : found) {
      auto& address = reinterpret_cast<sockaddr_in&>(storage);
      address.sin_family = AF_INET;
      ::inet_pton(AF_INET, "192.0.2.1", &address.sin_addr);
    }
    return found;
  };
  const auto monitor = Reachability::reachabilityWithHostName("service.test", setup_);
  EXPECT_EQ(monitor->currentReachabilityStatus(), kNotReachable);
  EXPECT_TRUE(log_.lines().empty()) << "there are no flags to log before the name is resolved";
  ASSERT_TRUE(monitor->startNotifier());
  ASSERT_TRUE(runUntil([&] { return questions == 1; }));
  ipBatch(kPlugIn + kGateway);
  ASSERT_TRUE(runUntil([&] { return changes_ >= 1 && questions >= 2; }));
  EXPECT_EQ(monitor->currentReachabilityStatus(), kReachableViaWiFi);
  monitor->stopNotifier();
  // With a name that resolves the host comes into reach.
  const auto later = Reachability::reachabilityWithHostName("service.test", setup_);
  ASSERT_TRUE(later->startNotifier());
  EXPECT_TRUE(runUntil([&] { return object_ == later; }));
}

TEST(Reachability, RefusesWhatIsNoTarget) {
  EXPECT_EQ(Reachability::reachabilityWithHostName(""), nullptr);
  EXPECT_EQ(Reachability::reachabilityWithHostName(std::string("a\0b", 3)), nullptr);
  EXPECT_EQ(Reachability::reachabilityWithHostName(std::string(300, 'a')), nullptr);
  const sockaddr family{.sa_family = AF_UNIX, .sa_data = {}};
  EXPECT_EQ(Reachability::reachabilityWithAddress(family, sizeof(family)), nullptr);
  const sockaddr_in shorter{.sin_family = AF_INET, .sin_port = 0, .sin_addr = {}, .sin_zero = {}};
  EXPECT_EQ(Reachability::reachabilityWithAddress(reinterpret_cast<const sockaddr&>(shorter), 8),
            nullptr);
}

}  // namespace
}  // namespace velmara
