#include "app/app_delegate.h"

#include <QApplication>
#include <QFile>
#include <QGuiApplication>
#include <QMetaObject>
#include <QUrl>
#include <QWidget>

#include <algorithm>
#include <array>
#include <string>
#include <utility>

#include "app/batch/batch_window.h"
#include "app/main_window_controller.h"
#include "imaging/image_reader.h"
#include "platform/dispatch.h"
#include "platform/log.h"
#include "platform/temporary_files.h"
#include "platform/timer.h"
#include "session/batch/batch_list.h"
#include "widgets/app_store_window.h"

namespace velmara {
namespace {

// The maker's applications, this one among them.
constexpr std::array kAppsList = {
    "/Applications/Velmara.app",         "/Applications/Velmara Frames.app",
    "/Applications/Velmara Horizon.app", "/Applications/Velmara Contact Sheet.app",
    "/Applications/Velmara Colour.app",  "/Applications/Velmara Archive.app",
    "/Applications/Velmara Proof.app",
};

}  // namespace

AppDelegate::AppDelegate(AppEnvironment environment)
    : environment_(std::move(environment)),
      dataStore_(
          {.applicationSupportDirectory = environment_.applicationSupport,
           .bundle = environment_.bundle,
           .alerts = &environment_.alerts,
           .presentError = [this](const DataStoreError& error) { return presentError(error); }}),
      recentPhotos_(environment_.applicationSupport + "/velmara/recent-photos") {}

AppDelegate::~AppDelegate() {
  eventLoopTimers().cancel(this);
  endServices();
}

void AppDelegate::applicationDidFinishLaunching() {
  // Every launch begins without settings; what follows depends on it.
  environment_.defaults.clear();
  trackInstall();
  registerReachability();
  baseTrackURL = environment_.addresses.baseTrackURL;
  makeSession();
  openMainWindow();
  mutArrAppsList.assign(kAppsList.begin(), kAppsList.end());
}

PhotoJobServices AppDelegate::jobServices() {
  return {environment_.engine, mainQueue(), globalQueue(),
          [](const std::string& line) { logLine(line); },
          [this] {
            auto image = readImage(environment_.bundle.pathForResource("noisy.png"));
            return image ? std::move(image).value() : Image();
          }};
}

// It begins with an empty list of photos.
void AppDelegate::makeSession() {
  session_ = std::make_unique<EditingSession>(EditingServices{
      .jobs = jobServices(),
      .timers = eventLoopTimers(),
      .alerts = environment_.alerts,
      .defaults = environment_.defaults,
      .workspace = environment_.workspace,
      .bundle = environment_.bundle,
      .storePage = environment_.addresses.storePage,
      .terminateApp = [this] { terminateApp(); },
      .showAppInFront = [this] { showAppInFront(); },
      .temporaryDirectory = temporaryDirectory(),
  });
  connect(session_.get(), &EditingSession::photoLoaded, this, [this](const LoadedPhoto& photo) {
    if (session_->isPhotoTemporary()) return;
    const Status added = recentPhotos_.add(photo.record.filePath);
    if (!added) logLine("recent photos: " + added.error());
  });
}

void AppDelegate::openMainWindow() {
  if (windowController_ == nullptr) {
    windowController_ = std::make_unique<MainWindowController>(ScreenServices{
        .session = *session_,
        .mainQueue = mainQueue(),
        .globalQueue = globalQueue(),
        .timers = eventLoopTimers(),
        .center = defaultCenter(),
        .alerts = environment_.alerts,
        .panels = environment_.panels,
        .workspace = environment_.workspace,
        .bundle = environment_.bundle,
        .log = [](const std::string& line) { logLine(line); },
        .temporaryDirectory = temporaryDirectory(),
        .openTapped = [this] { openTapped(); },
        .closeTapped = [this] { closeTapped(); },
        .saveTapped = [this] { saveTapped(); },
        .saveAsTapped = [this] { saveAsTapped(); },
        .showFeedback = [this] { showFeedback(); },
        .showVMPHelp = [this] { showVMPHelp(); },
        .showBatch = [this] { showBatch(); },
        .recentPhotos = &recentPhotos_,
    });
    connect(windowMain(), &AppStoreWindow::windowWillClose, this,
            [this] { handleWindowClose(windowMain()); });
    // After the window's own close has been answered, which may bring it back.
    connect(
        qApp, &QGuiApplication::lastWindowClosed, this,
        [this] {
          if (applicationShouldTerminateAfterLastWindowClosed() && !windowMain()->isVisible()) {
            terminateApp();
          }
        },
        Qt::QueuedConnection);
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
  // Without a page of the maker's, the one that came with the program.
  const std::string manual = environment_.bundle.pathForResource("manual/index.html");
  const bool isHere = reachesNobody(environment_.addresses.supportPage) && !manual.empty();
  openURL(isHere ? QUrl::fromLocalFile(QFile::decodeName(manual.c_str())).toEncoded().toStdString()
                 : environment_.addresses.supportPage,
          false);
}

bool AppDelegate::openURL(const std::string& url, bool inBackground) {
  return environment_.workspace.openURL(url, !inBackground);
}

void AppDelegate::showAppInFront() {
  logLine("showAppInFront");
  if (windowMain() != nullptr) environment_.workspace.showInFront(*windowMain());
}

bool AppDelegate::mayOpenHandedPhoto() const {
  const auto isAnswered = [this](const QWidget* widget) {
    return !widget->isVisible() || widget->windowType() != Qt::Dialog ||
           widget == static_cast<const QWidget*>(batchWindow_.get());
  };
  return windowMain() != nullptr && windowMain()->isVisible() &&
         std::ranges::all_of(QApplication::topLevelWidgets(), isAnswered);
}

void AppDelegate::handleWindowClose(QObject* window) {
  QMetaObject::invokeMethod(
      this, [this, window] { handleWindowClose_Main(window); }, Qt::QueuedConnection);
}

void AppDelegate::handleWindowClose_Main(QObject* window) {
  const bool isMainWindow = qobject_cast<AppStoreWindow*>(window) != nullptr;
  logFormat("closing Window Class %s", window->metaObject()->className());
  isMainWindow ? terminateApp() : windowWillClose(window);
}

void AppDelegate::terminateApp() {
  if (isTerminating_) return;
  isTerminating_ = true;
  if (!mayLeaveBatch()) {
    stay();
    return;
  }
  if (applicationShouldTerminate() == TerminateReply::kNow) {
    applicationWillTerminate();
    QCoreApplication::exit(0);
    return;
  }
  stay();
}

// Without its window the program could not be reached.
void AppDelegate::stay() {
  isTerminating_ = false;
  if (windowMain() != nullptr && !windowMain()->isVisible()) windowController_->showWindow();
}

QUndoStack* AppDelegate::windowWillReturnUndoManager() {
  ManagedObjectContext* context = dataStore_.managedObjectContext();
  return context != nullptr ? &context->undoManager() : nullptr;
}

// Nothing here can mend an error.
bool AppDelegate::presentError(const DataStoreError& error) {
  std::string reason = error.failureReason;
  if (!error.underlyingError.empty()) reason += "\n" + error.underlyingError;
  environment_.alerts.runModal({error.description, reason, {}});
  return false;
}

}  // namespace velmara
