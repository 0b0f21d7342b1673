#pragma once

#include <QObject>

#include <memory>
#include <string>
#include <vector>

#include "app/main_screen/screen_services.h"
#include "session/editing_session.h"

namespace velmara {

class AppStoreWindow;
class MainWindowController;

/// Where the application's own pages on the net are.
struct AppAddresses {
  std::string support = "https://support.velmara.invalid/";
  std::string shopPage = "https://shop.velmara.invalid/velmara";
  std::string baseTrackURL = "https://track.velmara.invalid/click";
};

/// Start, shared slots and end of the application. Main thread.
class AppDelegate : public QObject {
  Q_OBJECT

 public:
  /// The services' `photos` and application callbacks are filled in by this object.
  explicit AppDelegate(const DenoiseEngine& engine, AlertPresenter& alerts, Panels& panels,
                       Workspace& workspace, UserDefaults& defaults, AppAddresses addresses = {});
  ~AppDelegate() override;

  /// The start-up sequence.
  void applicationDidFinishLaunching();
  void openMainWindow();

  void openTapped();
  void closeTapped();
  void saveTapped();
  void saveAsTapped();
  void showVMPHelp();
  bool openURL(const std::string& url, bool inBackground);
  void showAppInFront();
  /// From any thread.
  void handleWindowClose(QObject* window);
  void handleWindowClose_Main(QObject* window);
  void terminateApp();
  bool applicationShouldTerminateAfterLastWindowClosed() const { return true; }

  MainWindowController* myWindowController() const { return windowController_.get(); }
  AppStoreWindow* windowMain() const;

  PhotoSlots photos;
  std::string baseTrackURL;
  /// Bundle paths that a promotion window would look for.
  std::vector<std::string> mutArrAppsList;

 private:
  const DenoiseEngine& engine_;
  AlertPresenter& alerts_;
  Panels& panels_;
  Workspace& workspace_;
  UserDefaults& defaults_;
  AppAddresses addresses_;
  std::unique_ptr<MainWindowController> windowController_;
};

}  // namespace velmara
