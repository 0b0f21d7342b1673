#pragma once

#include <QObject>
#include <QPointer>

#include <memory>
#include <stop_token>
#include <string>
#include <vector>

#include "app/app_environment.h"
#include "app/data_store/data_store.h"
#include "services/feedback_upload.h"
#include "services/reachability.h"
#include "services/tracker.h"
#include "session/editing_session.h"
#include "session/recent_photos.h"

class QCheckBox;
class QUndoStack;
class QWidget;

namespace velmara {

class AppStoreWindow;
class BatchList;
class BatchWindow;
class FeedbackWindowController;
class MainWindowController;

/// Start and end of the application, and the one editing session. Main thread.
class AppDelegate : public QObject {
  Q_OBJECT

 public:
  /// Nothing is started yet. What the environment refers to outlives this.
  explicit AppDelegate(AppEnvironment environment);
  /// Ends what the services have under way.
  ~AppDelegate() override;

  // Start and window, in app_delegate.cpp.

  /// The start-up sequence. The light appearance is set before, when the application object is
  /// made.
  void applicationDidFinishLaunching();
  /// Makes the window with the first call, and shows it.
  void openMainWindow();

  /// Commands of the menu, told on as notifications; Save As is Save.
  void openTapped();
  void closeTapped();
  void saveTapped();
  void saveAsTapped();
  /// Opens the maker's page, or the manual that came with the program.
  void showVMPHelp();
  /// Opens an address; in the background our window stays in front. False if nobody takes it.
  bool openURL(const std::string& url, bool inBackground);
  /// Brings the main window to the front.
  void showAppInFront();
  /// Whether the main window is shown and no sheet, panel or alert over it is to be answered first.
  bool mayOpenHandedPhoto() const;

  // The end, in app_delegate.cpp.

  /// From any thread.
  void handleWindowClose(QObject* window);
  /// The same, when the close has been answered: ends the program with the main window.
  void handleWindowClose_Main(QObject* window);
  /// Ends the application if applicationShouldTerminate lets it. If not, and the main window is
  /// closed already, shows it again: without it the program could not be reached.
  void terminateApp();
  /// What the end asks and tells: the data store is saved, and may refuse.
  bool applicationShouldTerminateAfterLastWindowClosed() const { return true; }
  void applicationWillTerminate() {}
  TerminateReply applicationShouldTerminate() { return dataStore_.applicationShouldTerminate(); }
  void saveAction() { dataStore_.saveAction(); }
  /// The undo manager of the data store; null if there is no store.
  QUndoStack* windowWillReturnUndoManager();
  /// Opened by whoever asks it first.
  DataStore& dataStore() { return dataStore_; }

  // Many photos at once, in app_delegate_batch.cpp.

  /// Opens the batch window.
  void showBatch();
  /// Whether nothing is under way there that leaving would end; asks. If it is to be ended, that is
  /// begun, and the application ends after it.
  bool mayLeaveBatch();

  // The cross-promotion window and its messages, in app_delegate_promotion.cpp. No flow makes the
  // window; whoever does puts it and its do-not-show-again box here.

  /// Null as long as nobody has put them here.
  QPointer<QWidget> windowSubscription;
  QPointer<QCheckBox> btnCheckDontShow;
  /// The window is closing, or its quit button was pressed.
  void windowWillClose(QObject* window);
  /// The message about a button of the window: built and handed to openURLAsync.
  void fireTweakTuneupHit(const std::string& button, const std::string& forTheProduct,
                          const std::string& toProductId, const std::string& fromProductId);
  /// Sends nothing, on purpose.
  virtual void openURLAsync(const std::string& /*url*/, const std::string& /*json*/) {}

  // The services, in app_delegate_services.cpp.

  /// Begins to watch the network, and looks once.
  void registerReachability();
  /// A change was announced by a monitor.
  void reachabilityChanged(const Notification& notification);
  /// Takes a monitor's flags over into the fields below.
  void updateInterfaceWithReachability(Reachability& monitor);
  /// Opens the feedback form.
  void showFeedback();
  /// Drops the requests that are under way; what is asked for later is not sent.
  void endServices();
  /// How many feedback uploads are under way.
  std::size_t uploadsUnderWay() const { return uploads_ ? uploads_->underWay() : 0; }

  /// Null before the window was made.
  MainWindowController* myWindowController() const { return windowController_.get(); }
  AppStoreWindow* windowMain() const;

  /// The photo and all that is done with it; from the start-up sequence on.
  EditingSession& session() { return *session_; }
  /// Of click tracking.
  std::string baseTrackURL;
  /// Bundle paths that a promotion window would look for.
  std::vector<std::string> mutArrAppsList;
  /// The watch on the network, and what it said last.
  std::shared_ptr<Reachability> internetReachability;
  NetworkStatus networkStatus = kNotReachable;
  bool isInternetAvailable = false;
  bool isInternetAvailableUsingWiFi = false;
  bool isInternetAvailableUsingDataProvider = false;
  bool connectionRequired = false;
  /// The launch's report; null before it.
  std::shared_ptr<Tracker> tracker;

 private:
  PhotoJobServices jobServices();
  void makeSession();
  void stay();
  void trackInstall();
  bool asksForInternet();
  FeedbackUploads& uploads();
  bool presentError(const DataStoreError& error);

  AppEnvironment environment_;
  DataStore dataStore_;
  std::stop_source servicesEnd_;
  std::unique_ptr<FeedbackUploads> uploads_;
  std::unique_ptr<EditingSession> session_;
  std::unique_ptr<MainWindowController> windowController_;
  std::unique_ptr<BatchList> batch_;
  std::unique_ptr<BatchWindow> batchWindow_;
  FeedbackWindowController* feedbackController_ = nullptr;  ///< owned by the main window
  RecentPhotos recentPhotos_;
  bool isTerminating_ = false;
};

}  // namespace velmara
