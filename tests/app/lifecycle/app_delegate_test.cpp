#include "app/app_delegate.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QCheckBox>
#include <QDialog>
#include <QElapsedTimer>
#include <QMenu>
#include <QMenuBar>
#include <QTimer>

#include <set>

#include "app/lifecycle/launch_fixture.h"
#include "platform/user_defaults.h"
#include "support/slowness.h"

namespace velmara {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing_support::kReportEnd;
using testing_support::LaunchTest;
using testing_support::Peer;
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
  const std::set<std::string> apps(delegate().mutArrAppsList.begin(),
                                   delegate().mutArrAppsList.end());
  EXPECT_EQ(apps.size(), 7U);
  for (const std::string& app : apps) EXPECT_TRUE(app.starts_with("/Applications/")) << app;

  EXPECT_EQ(delegate().tracker->frmApp, "vlpro");
  EXPECT_LT(logged("fireTQSHitForTrackSource"), logged("Reachability Flag Status: "));
  EXPECT_LT(logged("Reachability Flag Status: "), logged("Internet Available : "));
  ASSERT_TRUE(waitUntil([&] { return delegate().tracker->tid == 77; }));
  ASSERT_TRUE(waitUntil([&] { return server.requests().size() == 1; }));
  EXPECT_THAT(server.requests()[0], testing::StartsWith("POST /service/registerAppInstalls "));
  EXPECT_THAT(server.requests()[0],
              testing::EndsWith("\r\n\r\n{\"pid\":\"10931\",\"bins\":\"1\",\"mac\":\"SER1\"}"));
}

// With settings that outlive the process, as the program has them.
TEST_F(LaunchTest, EveryLaunchReportsAnew) {
  const RecordingServer server(answerReport);
  for (std::size_t count = 1; count <= 3; ++count) {
    UserDefaults stored(home.file("settings of the user.ini"));
    testing_support::IdleEngine idle;
    AppEnvironment again{.engine = idle,
                         .alerts = alerts,
                         .panels = panels,
                         .workspace = workspace,
                         .defaults = stored};
    again.addresses.trackingService = server.url();
    again.asksForNoTracking = false;
    AppDelegate delegate(again);
    delegate.applicationDidFinishLaunching();
    EXPECT_TRUE(waitUntil([&] { return server.requests().size() == count; }));
    stored.synchronize();
  }
}

TEST_F(LaunchTest, WhoeverAsksForNoTrackingIsNotReported) {
  const RecordingServer server(answerReport);
  environment.addresses.trackingService = server.url();
  environment.asksForNoTracking = true;
  launch();
  // Everything else is as always.
  EXPECT_GE(logged("fireTQSHitForTrackSource"), 0);
  EXPECT_TRUE(
      waitUntil([&] { return logged("url = " + server.url() + "/registerAppInstalls") >= 0; }));
  EXPECT_EQ(defaults.value(defaults_keys::kTrackedForAppStore).toString(), "TRACKING CALLED");
  EXPECT_EQ(delegate().tracker->tid, 0U);
  // Had a connection been made, it would be recorded before this one.
  environment.asksForNoTracking = false;
  end();
  launch();
  ASSERT_TRUE(waitUntil([&] { return delegate().tracker->tid == 77; }));
  EXPECT_EQ(server.requests().size(), 1U);
}

TEST_F(LaunchTest, ASilentServiceHoldsUpNeitherTheStartNorTheEnd) {
  std::atomic<int> asked = 0;
  const RecordingServer silent([&](Peer& peer) {
    std::string request = peer.readUntil(kReportEnd);
    ++asked;
    peer.waitForClose();
    return request;
  });
  environment.addresses.trackingService = silent.url();
  launch();
  EXPECT_TRUE(delegate().windowMain()->isVisible());
  ASSERT_TRUE(waitUntil([&] { return asked == 1; }));
  EXPECT_FALSE(isGlobalQueueIdle());
  QElapsedTimer taken;
  taken.start();
  delegate().endServices();
  EXPECT_LT(taken.elapsed(), 200 * testing_support::kSlowness);
  EXPECT_TRUE(waitUntil(isGlobalQueueIdle));
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
  const std::vector<std::string> expected{
      "notificationOpenPhotoFromMenuTapped", "notificationSavePhotoFromMenuTapped",
      "notificationSavePhotoFromMenuTapped", "notificationClosePhotoFromMenuTapped"};
  delegate().openTapped();
  delegate().saveTapped();
  delegate().saveAsTapped();
  EXPECT_EQ(posted, std::vector(expected.begin(), expected.end() - 1));
  panels.answerOpen({});
  posted.clear();
  const QMenu& file =
      *delegate().windowMain()->findChild<QMenuBar*>()->actions().constFirst()->menu();
  for (const int row : {0, 3, 4, 1}) file.actions()[row]->trigger();
  EXPECT_EQ(posted, expected);
  panels.answerOpen({});
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
  EXPECT_GE(logged("showAppInFront"), 0);
}

TEST_F(LaunchTest, TheWindowsControllerIsAnnouncedWithItsScreen) {
  launch();
  MainWindowController& controller = *delegate().myWindowController();
  int announced = 0;
  QObject::connect(&controller, &MainWindowController::viewControllerChanged, &controller,
                   [&] { ++announced; });
  controller.changeViewController(0);
  EXPECT_EQ(announced, 1);
  EXPECT_EQ(controller.property("viewController").value<QObject*>(), controller.viewController());
  EXPECT_EQ(controller.viewController()->representedObject, 3) << "title bar, content, bottom bar";
}

// Runs the application's loop: the exit code, or kGoesOn if nothing ended it.
constexpr int kGoesOn = 77;
int runApplicationLoop(const std::function<void()>& act) {
  QTimer::singleShot(0, act);
  QTimer stillRunning;
  stillRunning.setSingleShot(true);
  QObject::connect(&stillRunning, &QTimer::timeout, [] { QApplication::exit(kGoesOn); });
  stillRunning.start(300);
  return QApplication::exec();
}

TEST_F(LaunchTest, TheScreenFillsItsPlaceInTheWindow) {
  launch();
  AppStoreWindow& window = *delegate().windowMain();
  EXPECT_EQ(window.objectName(), "windowMain");
  auto* container = window.findChild<QWidget*>("mainScreenView");
  ASSERT_NE(container, nullptr);
  EXPECT_EQ(window.contentView(), container);
  auto* screen = container->findChild<QWidget*>("MainScreenViewController");
  ASSERT_NE(screen, nullptr);
  for (const QSize& size : {window.minimumSize(), window.minimumSize() + QSize(37, 23)}) {
    window.setMaximumSize(size);
    window.resize(size);
    QApplication::processEvents();
    EXPECT_EQ(screen->geometry(), container->rect());
    // All of the window but its border is the menu bar, the title bar and the screen.
    EXPECT_EQ(screen->mapTo(&window, screen->rect().bottomRight()),
              window.rect().bottomRight() - QPoint(1, 1));
  }
}

TEST_F(LaunchTest, EndsWithItsWindowUnlessSavingFails) {
  QApplication::setQuitOnLastWindowClosed(false);
  enum class Store { kNone, kFailing };
  struct Case {
    const char* name;
    std::function<void()> act;
    Store store;
    int answer;
    int exitCode;
  };
  const auto close = [this] { delegate().windowMain()->close(); };
  const auto terminate = [this] { delegate().terminateApp(); };
  const Case cases[] = {
      {"the window closes", close, Store::kNone, 0, 0},
      {"terminated", terminate, Store::kNone, 0, 0},
      {"told from another object",
       [this] { delegate().handleWindowClose(delegate().windowMain()); }, Store::kNone, 0, 0},
      {"another window closes",
       [this] {
         QDialog other(delegate().windowMain());
         other.show();
         other.close();
         delegate().handleWindowClose_Main(&other);
       },
       Store::kNone, 0, kGoesOn},
      {"Quit anyway", close, Store::kFailing, 0, kGoesOn},
      {"Cancel", close, Store::kFailing, 1, 0},
      {"Quit anyway without closing", terminate, Store::kFailing, 0, kGoesOn},
  };
  for (const Case& c : cases) {
    launch();
    alerts.shown.clear();
    if (c.store == Store::kFailing) {
      ManagedObjectContext* context = delegate().dataStore().managedObjectContext();
      ASSERT_NE(context, nullptr);
      EXPECT_EQ(delegate().windowWillReturnUndoManager(), &context->undoManager());
      // Makes changes that cannot be saved: the file's place is taken.
      context->undoManager().push(new QUndoCommand);
      std::filesystem::create_directories(
          home.file("share/KV.Tarnlet/OSXCoreDataObjC.storedata/x"));
      alerts.answers = {0, c.answer};  // The error is presented first.
    }
    EXPECT_EQ(runApplicationLoop(c.act), c.exitCode) << c.name;
    EXPECT_EQ(alerts.shown.size(), c.store == Store::kFailing ? 2U : 0U) << c.name;
    if (c.exitCode == kGoesOn) {
      EXPECT_TRUE(delegate().windowMain()->isVisible()) << c.name;
    }
    end();
    std::filesystem::remove_all(home.file("share"));
  }
  EXPECT_GE(logged("closing Window Class velmara::AppStoreWindow"), 0);
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

TEST_F(LaunchTest, TellsWhyThereIsNoStore) {
  testing_support::writeFile(home.file("share"), "x");
  launch();
  EXPECT_EQ(delegate().windowWillReturnUndoManager(), nullptr);
  delegate().saveAction();
  ASSERT_EQ(alerts.shown.size(), 1U);
  EXPECT_EQ(alerts.shown[0].messageText, "Failed to initialize the application's saved data");
  EXPECT_THAT(alerts.shown[0].informativeText,
              HasSubstr("There was an error creating or loading the application's saved data.\n"));
  EXPECT_EQ(delegate().applicationShouldTerminate(), TerminateReply::kNow);
}

}  // namespace
}  // namespace velmara
