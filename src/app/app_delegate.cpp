#include "app/app_delegate.h"

#include <QCoreApplication>
#include <QMetaObject>
#include <QWidget>

#include <string>
#include <utility>

#include "app/main_window_controller.h"
#include "platform/dispatch.h"
#include "platform/log.h"
#include "platform/temporary_directory.h"
#include "widgets/app_store_window.h"

namespace velmara {

AppDelegate::AppDelegate(const DenoiseEngine& engine, AlertPresenter& alerts, Panels& panels,
                         Workspace& workspace, UserDefaults& defaults, AppAddresses addresses)
    : engine_(engine),
      alerts_(alerts),
      panels_(panels),
      workspace_(workspace),
      defaults_(defaults),
      addresses_(std::move(addresses)) {}

AppDelegate::~AppDelegate() = default;

void AppDelegate::applicationDidFinishLaunching() {
  // Every launch begins without settings; what follows depends on it.
  defaults_.removePersistentDomain(mainBundle().bundleIdentifier);
  baseTrackURL = addresses_.baseTrackURL;
  photos.arraySelectedImagesToProcess.clear();
  openMainWindow();
}

void AppDelegate::openMainWindow() {
  if (windowController_ == nullptr) {
    windowController_ = std::make_unique<MainWindowController>(ScreenServices{
        .photos = photos,
        .engine = engine_,
        .mainQueue = mainQueue(),
        .globalQueue = globalQueue(),
        .timers = eventLoopTimers(),
        .center = defaultCenter(),
        .alerts = alerts_,
        .panels = panels_,
        .workspace = workspace_,
        .defaults = defaults_,
        .bundle = mainBundle(),
        .log = [](const std::string& line) { logLine(line); },
        .temporaryDirectory = temporaryDirectory(),
        .terminateApp = [this] { terminateApp(); },
        .showAppInFront = [this] { showAppInFront(); },
        .showFeedback = [this] { showVMPHelp(); },
        .showVMPHelp = [this] { showVMPHelp(); },
    });
    connect(windowMain(), &AppStoreWindow::windowWillClose, this,
            [this] { handleWindowClose(windowMain()); });
  }
  windowController_->showWindow();
}

AppStoreWindow* AppDelegate::windowMain() const {
  return windowController_ ? windowController_->windowMain() : nullptr;
}

void AppDelegate::openTapped() {
  defaultCenter().post(notifications::kOpenPhotoFromMenuTapped);
}

void AppDelegate::closeTapped() {
  defaultCenter().post(notifications::kClosePhotoFromMenuTapped);
}

void AppDelegate::saveTapped() {
  defaultCenter().post(notifications::kSavePhotoFromMenuTapped);
}

// Save and Save As are the same command.
void AppDelegate::saveAsTapped() {
  saveTapped();
}

void AppDelegate::showVMPHelp() {
  openURL(addresses_.support, false);
}

bool AppDelegate::openURL(const std::string& url, bool inBackground) {
  return workspace_.openURL(url, !inBackground);
}

void AppDelegate::showAppInFront() {
  logLine("showAppInFront");
  if (windowMain() != nullptr) workspace_.showInFront(*windowMain());
}

void AppDelegate::handleWindowClose(QObject* window) {
  QMetaObject::invokeMethod(
      this, [this, window] { handleWindowClose_Main(window); }, Qt::QueuedConnection);
}

void AppDelegate::handleWindowClose_Main(QObject* window) {
  const bool isMainWindow = qobject_cast<AppStoreWindow*>(window) != nullptr;
  logFormat("closing Window Class %s", window->metaObject()->className());
  if (isMainWindow) terminateApp();
}

void AppDelegate::terminateApp() {
  QCoreApplication::exit(0);
}

}  // namespace velmara
