#include "services/reachability.h"

#include <gtest/gtest.h>

#include <arpa/inet.h>
#include <filesystem>
#include <netinet/in.h>

#include "platform/notification_center.h"
#include "services/event_loop.h"
#include "support/log_capture.h"
#include "support/network_namespace.h"

namespace velmara {
namespace {

using testing_support::ip;
using testing_support::ipBatch;
using testing_support::runUntil;

class ReachabilityTest : public testing::Test {
 protected:
  void SetUp() override {
    const std::string reason = testing_support::enterNewNetwork();
    if (!reason.empty()) GTEST_SKIP() << reason;
    token_ = center_.addObserver(
        notifications::kNetworkReachabilityChanged, [this](const Notification& note) {
          ++changes_;
          object_ = std::any_cast<std::shared_ptr<Reachability>>(note.object);
        });
  }

  // A cable between two interfaces, both ends up.
  static void plugIn() {
    ip("link add v0 type veth peer name v1");
    ip("link set v1 up");
    ip("link set v0 up");
  }

  static void plugInWithGateway() {
    plugIn();
    ip("addr add 10.9.0.2/24 dev v0");
    ip("route add default via 10.9.0.1 dev v0");
  }

  std::shared_ptr<Reachability> address(const char* text) {
    sockaddr_in v4{};
    v4.sin_family = AF_INET;
    if (::inet_pton(AF_INET, text, &v4.sin_addr) == 1) {
      return Reachability::reachabilityWithAddress(reinterpret_cast<const sockaddr&>(v4),
                                                   sizeof(v4), setup_);
    }
    sockaddr_in6 v6{};
    v6.sin6_family = AF_INET6;
    EXPECT_EQ(::inet_pton(AF_INET6, text, &v6.sin6_addr), 1);
    return Reachability::reachabilityWithAddress(reinterpret_cast<const sockaddr&>(v6), sizeof(v6),
                                                 setup_);
  }

  std::shared_ptr<Reachability> internet() {
    return Reachability::reachabilityForInternetConnection(setup_);
  }

  // The letters of the last line of the log.
  std::string letters() const {
    if (log_.lines().empty()) return "no line";
    return log_.lines().back().substr(std::string_view("Reachability Flag Status: ").size(), 9);
  }

  NotificationCenter center_;
  ReachabilitySetup setup_{.center = center_};
  int changes_ = 0;
  std::shared_ptr<Reachability> object_;
  const testing_support::LogCapture log_;

 private:
  NotificationCenter::Token token_;
};

TEST_F(ReachabilityTest, TheInternetFollowsTheDefaultRoute) {
  const auto monitor = internet();
  EXPECT_EQ(monitor->currentReachabilityStatus(), kNotReachable);
  EXPECT_EQ(log_.lines().back(), "Reachability Flag Status: -- ------ networkStatusForFlags\n");
  plugIn();
  ip("addr add 10.9.0.2/24 dev v0");
  EXPECT_EQ(monitor->currentReachabilityStatus(), kNotReachable) << "no default route yet";
  ip("route add default via 10.9.0.1 dev v0");
  EXPECT_EQ(monitor->currentReachabilityStatus(), kReachableViaWiFi);
  EXPECT_EQ(letters(), "-R ------");
  ip("route replace default dev v0");
  EXPECT_EQ(monitor->currentReachabilityStatus(), kReachableViaWWAN) << "the gateway is lost";
  EXPECT_EQ(letters(), "WR ------");
  ip("link set v1 down");
  EXPECT_EQ(monitor->currentReachabilityStatus(), kNotReachable) << "the cable is out";
  ip("link set v1 up");
  EXPECT_EQ(monitor->currentReachabilityStatus(), kReachableViaWWAN);
  ip("link set v0 down");
  EXPECT_EQ(monitor->currentReachabilityStatus(), kNotReachable) << "the interface is off";
  ip("link set v0 up");
  ip("route add unreachable default metric 5");
  EXPECT_EQ(monitor->currentReachabilityStatus(), kNotReachable) << "the route refuses";
}

TEST_F(ReachabilityTest, SeveralWaysAndAGatewayOfTheOtherFamilyCount) {
  plugIn();
  ip("addr add 10.9.0.2/24 dev v0");
  ip("route add default nexthop via 10.9.0.1 dev v0 nexthop via 10.9.0.3 dev v0");
  EXPECT_EQ(internet()->currentReachabilityStatus(), kReachableViaWiFi);
  ip("route replace default via inet6 fe80::1 dev v0");
  EXPECT_EQ(internet()->currentReachabilityStatus(), kReachableViaWiFi);
}

TEST_F(ReachabilityTest, IPv6AloneIsTheInternetToo) {
  if (!std::filesystem::exists("/proc/sys/net/ipv6")) GTEST_SKIP() << "the kernel has no IPv6";
  plugIn();
  ip("-6 addr add 2001:db8::2/64 dev v0 nodad");
  EXPECT_EQ(internet()->currentReachabilityStatus(), kNotReachable);
  ip("-6 route add default via 2001:db8::1 dev v0");
  EXPECT_EQ(internet()->currentReachabilityStatus(), kReachableViaWiFi);
  EXPECT_EQ(address("::")->currentReachabilityStatus(), kReachableViaWiFi);
  EXPECT_EQ(address("2001:db8:1::1")->currentReachabilityStatus(), kReachableViaWiFi);
  EXPECT_EQ(address("10.1.2.3")->currentReachabilityStatus(), kNotReachable);
}

TEST_F(ReachabilityTest, AnAddressIsLookedUpByItsOwnRoute) {
  plugInWithGateway();
  const std::pair<const char*, std::pair<NetworkStatus, const char*>> cases[] = {
      {"192.0.2.1", {kReachableViaWiFi, "-R ------"}},
      {"10.9.0.77", {kReachableViaWWAN, "WR ------"}},
      {"10.9.0.2", {kReachableViaWWAN, "WR -----l"}},
      {"127.0.0.1", {kReachableViaWWAN, "WR -----l"}},
      {"2001:db8::1", {kNotReachable, "-- ------"}},
  };
  for (const auto& [text, expected] : cases) {
    EXPECT_EQ(address(text)->currentReachabilityStatus(), expected.first) << text;
    EXPECT_EQ(letters(), expected.second) << text;
  }
}

TEST_F(ReachabilityTest, TheLocalWiFiMonitorWantsADirectRoute) {
  const auto monitor = Reachability::reachabilityForLocalWiFi(setup_);
  EXPECT_EQ(monitor->currentReachabilityStatus(), kNotReachable);
  plugInWithGateway();
  EXPECT_EQ(monitor->currentReachabilityStatus(), kNotReachable);
  EXPECT_EQ(log_.lines().back(), "Reachability Flag Status: -R ------ localWiFiStatusForFlags\n");
  ip("addr add 169.254.7.7/16 dev v0");
  EXPECT_EQ(monitor->currentReachabilityStatus(), kReachableViaWiFi);
}

TEST_F(ReachabilityTest, ADormantInterfaceRequiresAConnection) {
  plugIn();
  ip("link set v1 down");
  ip("link set v0 mode dormant");
  ip("link set v1 up");
  ip("addr add 10.9.0.2/24 dev v0");
  ip("route add default via 10.9.0.1 dev v0");
  const auto monitor = internet();
  // The kernel takes a moment to see the cable.
  EXPECT_TRUE(runUntil([&] { return monitor->connectionRequired(); }));
  EXPECT_EQ(monitor->currentReachabilityStatus(), kNotReachable);
  EXPECT_EQ(letters(), "-R -c----");
  ip("link set v0 mode default");
  ip("link set v1 down");
  ip("link set v1 up");
  EXPECT_TRUE(runUntil([&] { return !monitor->connectionRequired(); }));
  EXPECT_TRUE(runUntil([&] { return monitor->currentReachabilityStatus() == kReachableViaWiFi; }));
}

TEST_F(ReachabilityTest, AnnouncesChangesOnlyWhileTheNotifierRuns) {
  const auto monitor = internet();
  ASSERT_TRUE(monitor->startNotifier());
  ASSERT_TRUE(monitor->startNotifier());
  plugInWithGateway();
  ASSERT_TRUE(runUntil([&] { return changes_ == 1; }));
  EXPECT_EQ(object_, monitor);
  EXPECT_EQ(object_->currentReachabilityStatus(), kReachableViaWiFi);
  ip("route del default");
  ASSERT_TRUE(runUntil([&] { return changes_ == 2; }));
  monitor->stopNotifier();
  ip("route add default via 10.9.0.1 dev v0");
  bool later = false;
  QTimer::singleShot(300, [&] { later = true; });
  runUntil([&] { return later; });
  EXPECT_EQ(changes_, 2);
}

TEST_F(ReachabilityTest, AThousandChangesInASecondAreFewAnnouncements) {
  plugInWithGateway();
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
  std::thread other([&] { ipBatch(lines + "route del default\n"); });
  runUntil([&] { return taken.elapsed() > 600; });
  other.join();
  ASSERT_TRUE(runUntil([&] { return monitor->currentReachabilityStatus() == kNotReachable; }));
  EXPECT_GE(changes_, 1);
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
  plugInWithGateway();
  ASSERT_TRUE(runUntil([&] { return changes_ >= 1 && questions >= 2; }));
  EXPECT_EQ(monitor->currentReachabilityStatus(), kReachableViaWiFi);
}

TEST_F(ReachabilityTest, AnObserverMayLetGoOfTheMonitor) {
  auto monitor = internet();
  ASSERT_TRUE(monitor->startNotifier());
  const auto token =
      center_.addObserver(notifications::kNetworkReachabilityChanged, [&](const Notification&) {
        monitor.reset();
        object_.reset();
      });
  plugInWithGateway();
  EXPECT_TRUE(runUntil([&] { return monitor == nullptr; }));
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
