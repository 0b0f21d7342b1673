#pragma once

#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QTest>

#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "app/app_delegate.h"
#include "app/main_window_controller.h"
#include "engine/denoise_algo_implementation.h"
#include "platform/dispatch.h"
#include "platform/user_defaults.h"
#include "support/event_loop.h"
#include "support/recorded_log.h"
#include "support/recording_server.h"
#include "support/scratch_folder.h"
#include "support/scripted_desktop.h"
#include "widgets/app_store_window.h"

namespace velmara::testing_support {

inline constexpr std::string_view kReportEnd = "}";
inline constexpr std::string_view kEnvelopeEnd = "</soap:Envelope>";

/// The application delegate as the program makes it, offscreen, with the desktop's part scripted
/// and the services' addresses on loopback or nowhere.
class LaunchTest : public testing::Test {
 protected:
  LaunchTest() {
    environment.addresses.trackingService = "http://tracking.velmara.invalid";
    environment.addresses.baseTrackURL = "http://clicks.test/base";
    environment.addresses.feedbackEndpoint = "http://feedback.velmara.invalid/";
    environment.addresses.feedbackNamespace = "urn:f/";
    environment.addresses.supportPage = "https://help.test/";
    environment.bundle.CFBundleName = "Velmara";
    environment.home = home.path().string();
    environment.applicationSupport = home.file("share");
    environment.asksForNoTracking = false;
    environment.serialNumber = [] { return std::optional<std::string>("SER1"); };
  }
  ~LaunchTest() override {
    delegate_.reset();
    // What was sent in the background ends with the delegate.
    EXPECT_TRUE(waitUntil(isGlobalQueueIdle));
  }

  void launch() {
    delegate_ = std::make_unique<AppDelegate>(environment);
    delegate_->applicationDidFinishLaunching();
    QApplication::processEvents();
  }
  void end() { delegate_.reset(); }
  AppDelegate& delegate() { return *delegate_; }

  /// The menus' item with a title.
  QAction& command(const char* title) {
    for (QAction* item : delegate().windowMain()->findChildren<QAction*>()) {
      if (item->text() == QString::fromUtf8(title)) return *item;
    }
    throw std::runtime_error(std::string("no such command: ") + title);
  }
  /// Serves the event loop until the condition holds; false if it never does.
  static bool waitUntil(const std::function<bool()>& condition) {
    return QTest::qWaitFor(condition, kPatience);
  }
  std::vector<std::string> log() const { return log_.lines(); }
  /// Where a line that begins so first stands in the log; -1 if none does.
  int logged(std::string_view beginning) const { return log_.find(beginning); }

  ScratchFolder home;
  const AlgorithmEngine engine{DenoiseAlgoImplementation::sharedInstance()};
  ScriptedAlerts alerts;
  ScriptedPanels panels;
  RecordingWorkspace workspace;
  UserDefaults defaults{home.file("settings.ini")};
  AppEnvironment environment{.engine = engine,
                             .alerts = alerts,
                             .panels = panels,
                             .workspace = workspace,
                             .defaults = defaults};

 private:
  std::unique_ptr<AppDelegate> delegate_;
  RecordedLog log_;
};

}  // namespace velmara::testing_support
