#include "app/app_delegate.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QCheckBox>
#include <QDialog>
#include <QMenu>
#include <QTimer>

#include "app/lifecycle/launch_fixture.h"
#include "platform/user_defaults.h"
#include "support/network_namespace.h"

namespace velmara {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing_support::ip;
using testing_support::kReportEnd;
using testing_support::LaunchTest;
using testing_support::RecordingServer;

constexpr const char* kTid = "HTTP/1.1 200 OK\r\nContent-Length: 10\r\n\r\n{\"tid\":77}";

const RecordingServer::Script answerReport = testing_support::answering(kReportEnd, kTid);

TEST_F(LaunchTest, StartsInItsOrder) {
  const RecordingServer server(answerReport);
  environment.addresses.trackingService = server.url("127.0.0.1", "/service");
  defaults.set(defaults_keys::kTrackedForAppStore, "TRACKING CALLED");
  defaults.set(defaults_keys::kNotShowPromotionWindow, true);
  // What is there when the window builds its title bar.
  int headers = 0;
  const auto token =
      defaultCenter().addObserver(notifications::kSetupHeader, [&](const Notification&) {
        ++headers;
        EXPECT_FALSE(defaults.value(defaults_keys::kNotShowPromotionWindow).isValid());
        EXPECT_EQ(defaults.value(defaults_keys::kTrackedForAppStore).toString(), "TRACKING CALLED");
        EXPECT_NE(delegate().tracker, nullptr);
        EXPECT_NE(delegate().internetReachability, nullptr);
        EXPECT_GE(logged("Internet Available : "), 0);
        EXPECT_EQ(delegate().baseTrackURL, "http://clicks.test/base");
        EXPECT_TRUE(delegate().session().arraySelectedImagesToProcess().empty());
        EXPECT_TRUE(delegate().mutArrAppsList.empty());
      });
  launch();
  EXPECT_EQ(headers, 1);
  EXPECT_TRUE(delegate().windowMain()->isVisible());
  EXPECT_THAT(delegate().mutArrAppsList,
              testing::AllOf(testing::SizeIs(7), testing::Contains("/Applications/Velmara.app")));
  EXPECT_EQ(delegate().tracker->frmApp, "vlpro");
  EXPECT_LT(logged("fireTQSHitForTrackSource"), logged("Reachability Flag Status: "));
  EXPECT_LT(logged("Reachability Flag Status: "), logged("Internet Available : "));
  ASSERT_TRUE(waitUntil([&] { return delegate().tracker->tid == 77; }));
  ASSERT_TRUE(waitUntil([&] { return server.requests().size() == 1; }));
  EXPECT_THAT(server.requests()[0], testing::StartsWith("POST /service/registerAppInstalls "));
  EXPECT_THAT(server.requests()[0],
              testing::EndsWith("\r\n\r\n{\"pid\":\"10931\",\"bins\":\"1\",\"mac\":\"SER1\"}"));
}

TEST_F(LaunchTest, EveryLaunchReportsAnewButNotForWhoeverAsksForNoTracking) {
  const RecordingServer server(answerReport);
  environment.addresses.trackingService = server.url();
  environment.asksForNoTracking = true;
  launch();
  // Everything else is as always.
  EXPECT_GE(logged("fireTQSHitForTrackSource"), 0);
  EXPECT_TRUE(
      waitUntil([&] { return logged("url = " + server.url() + "/registerAppInstalls") >= 0; }));
  EXPECT_EQ(delegate().tracker->tid, 0U);
  // Had a connection been made, it would be recorded before these. The settings outlive a launch.
  environment.asksForNoTracking = false;
  for (std::size_t count = 1; count <= 2; ++count) {
    end();
    defaults.synchronize();
    launch();
    ASSERT_TRUE(waitUntil([&] { return delegate().tracker->tid == 77; }));
    EXPECT_EQ(server.requests().size(), count);
  }
}

TEST_F(LaunchTest, TheMenusCommandsAreTheDelegates) {
  launch();
  std::vector<std::string> posted;
  std::vector<NotificationCenter::Token> tokens;
  for (const auto name :
       {notifications::kOpenPhotoFromMenuTapped, notifications::kClosePhotoFromMenuTapped,
        notifications::kSavePhotoFromMenuTapped}) {
    tokens.push_back(defaultCenter().addObserver(name, [&](const Notification& note) {
      posted.push_back(note.name);
      EXPECT_FALSE(note.object.has_value());
    }));
  }
  for (const char* title : {"&Open…", "&Save…", "Save &As…", "&Close"}) command(title).trigger();
  EXPECT_THAT(
      posted,
      ElementsAre("notificationOpenPhotoFromMenuTapped", "notificationSavePhotoFromMenuTapped",
                  "notificationSavePhotoFromMenuTapped", "notificationClosePhotoFromMenuTapped"));
  panels.answerOpen({});
}

TEST_F(LaunchTest, PhotosOfTheLastLaunchAreOfferedAgain) {
  const std::string kept = home.file("a & b.png"), gone = home.file("gone.png");
  for (const std::string& path : {kept, gone}) {
    std::filesystem::copy_file(mainBundle().pathForResource("noisy.png"), path);
  }
  const auto offered = [this] {
    QAction& recent = command("Open &Recent");
    Q_EMIT static_cast<QMenu*>(recent.parent()->parent())->aboutToShow();
    return recent.menu();
  };
  launch();
  EXPECT_FALSE(offered()->isEnabled());
  for (const std::string& path : {gone, kept}) {
    delegate().session().updateSelectedImageToBeFilteredWithPath(path);
    ASSERT_TRUE(waitUntil([&] { return delegate().session().photo().image.isValid(); }));
  }
  ASSERT_TRUE(waitUntil([&] { return offered()->actions().size() == 4; }));
  end();
  std::filesystem::remove(gone);
  launch();
  ASSERT_TRUE(waitUntil(isGlobalQueueIdle));
  ASSERT_EQ(offered()->actions().size(), 3);
  EXPECT_TRUE(offered()->actions()[0]->text().startsWith("a && b.png in "));
  offered()->actions()[0]->trigger();
  EXPECT_EQ(delegate().session().selectedImageFile()->filePath, kept);
  offered()->actions()[2]->trigger();
  EXPECT_FALSE(offered()->isEnabled());
  ASSERT_TRUE(waitUntil([this] { return !delegate().session().isRunningAlgorithm(); }));
}

TEST_F(LaunchTest, ReachesWhatLiesOutside) {
  launch();
  delegate().showVMPHelp();
  EXPECT_TRUE(delegate().openURL("https://elsewhere.test/", true));
  workspace.accepts = false;
  EXPECT_FALSE(delegate().openURL("::", false));
  EXPECT_EQ(workspace.opened.at(0), (std::pair<std::string, bool>("https://help.test/", true)));
  EXPECT_FALSE(workspace.opened.at(1).second);
  delegate().showAppInFront();
  EXPECT_THAT(workspace.shownInFront, ElementsAre(delegate().windowMain()));
}

// Runs the application's loop: the exit code, or kGoesOn if nothing ended it.
constexpr int kGoesOn = 77;
int runApplicationLoop(const std::function<void()>& act) {
  QTimer::singleShot(0, act);
  QTimer stillRunning;
  stillRunning.setSingleShot(true);
  QObject::connect(&stillRunning, &QTimer::timeout, [] { QApplication::exit(kGoesOn); });
  stillRunning.start(100);
  return QApplication::exec();
}

TEST_F(LaunchTest, EndsWithItsWindowUnlessSavingFails) {
  QApplication::setQuitOnLastWindowClosed(false);
  struct Case {
    const char* name;
    std::function<void()> act;
    bool fails;  // to save its store
    int answer;
    int exitCode;
  };
  const auto close = [this] { delegate().windowMain()->close(); };
  const auto terminate = [this] { delegate().terminateApp(); };
  const Case cases[] = {
      {"the window closes", close, false, 0, 0},
      {"terminated", terminate, false, 0, 0},
      {"another window closes",
       [this] {
         QDialog other(delegate().windowMain());
         other.show();
         other.close();
         delegate().handleWindowClose_Main(&other);
       },
       false, 0, kGoesOn},
      {"Quit anyway", close, true, 0, kGoesOn},
      {"Cancel", close, true, 1, 0},
      {"Quit anyway without closing", terminate, true, 0, kGoesOn},
  };
  for (const Case& c : cases) {
    launch();
    alerts.shown.clear();
    if (c.fails) {
      // Makes changes that cannot be saved: the file's place is taken.
      ASSERT_NE(delegate().windowWillReturnUndoManager(), nullptr);
      delegate().windowWillReturnUndoManager()->push(new QUndoCommand);
      std::filesystem::create_directories(
          home.file("share/KV.Tarnlet/OSXCoreDataObjC.storedata/x"));
      alerts.answers = {0, c.answer};  // The error is presented first.
    }
    EXPECT_EQ(runApplicationLoop(c.act), c.exitCode) << c.name;
    EXPECT_EQ(alerts.shown.size(), c.fails ? 2U : 0U) << c.name;
    EXPECT_TRUE(c.exitCode != kGoesOn || delegate().windowMain()->isVisible()) << c.name;
    end();
    std::filesystem::remove_all(home.file("share"));
  }
  EXPECT_GE(logged("closing Window Class velmara::AppStoreWindow"), 0);
  // Without a store it says why, in one alert, and is no reason to stay.
  testing_support::writeFile(home.file("share"), "x");
  launch();
  alerts.shown.clear();
  EXPECT_EQ(delegate().windowWillReturnUndoManager(), nullptr);
  delegate().saveAction();
  ASSERT_EQ(alerts.shown.size(), 1U);
  EXPECT_EQ(alerts.shown[0].messageText, "Failed to initialize the application's saved data");
  EXPECT_THAT(alerts.shown[0].informativeText, HasSubstr("saved data.\n"));
  EXPECT_EQ(delegate().applicationShouldTerminate(), TerminateReply::kNow);
}

// A delegate that tells what it was to send.
class TellingDelegate : public AppDelegate {
 public:
  using AppDelegate::AppDelegate;
  void openURLAsync(const std::string& url, const std::string& json) override {
    sent.emplace_back(url, json);
  }
  std::vector<std::pair<std::string, std::string>> sent;
};

TEST_F(LaunchTest, ThePromotionWindowEndsTheProgramAndItsBoxIsRemembered) {
  for (const bool isTicked : {false, true}) {
    TellingDelegate delegate(environment);
    delegate.baseTrackURL = "http://clicks.test/base";
    delegate.fireTweakTuneupHit("Buy", "frames", "2", "1");
    ASSERT_EQ(delegate.sent.size(), 1U);
    EXPECT_EQ(delegate.sent[0].first, "http://clicks.test/base/CrossTracking");
    EXPECT_EQ(delegate.sent[0].second,
              R"({"from":"vlpro","to":"frames","mac":"SER1","btn":"Buy","fromid":"1","toid":"2"})");
    QDialog promotion;
    QCheckBox box(&promotion);
    box.setChecked(isTicked);
    delegate.windowSubscription = &promotion;
    delegate.btnCheckDontShow = &box;
    EXPECT_EQ(runApplicationLoop([&] { delegate.handleWindowClose(&promotion); }), 0);
    EXPECT_EQ(defaults.value(defaults_keys::kNotShowPromotionWindow).toBool(), isTicked);
  }
}

// In a network of its own; skipped where there is none to be had.
TEST_F(LaunchTest, FollowsTheNetwork) {
  const std::string reason = testing_support::enterNewNetwork();
  if (!reason.empty()) GTEST_SKIP() << reason;
  launch();
  EXPECT_FALSE(delegate().isInternetAvailable);
  EXPECT_GE(logged("Internet Available : NO"), 0);
  testing_support::ipBatch(
      "link add v0 type veth peer name v1\nlink set v1 up\nlink set v0 up\n"
      "addr add 10.9.0.2/24 dev v0\n");
  const std::pair<const char*, NetworkStatus> rows[] = {
      {"route add default via 10.9.0.1 dev v0", kReachableViaWiFi},
      {"route replace default dev v0", kReachableViaWWAN},
      {"link set v0 down", kNotReachable}};
  for (const auto& [change, status] : rows) {
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
