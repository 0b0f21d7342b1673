// The services' seats: install tracking, reachability, feedback.
#include <QTimer>

#include "app/app_delegate.h"
#include "app/sheets/feedback_window_controller.h"
#include "platform/dispatch.h"
#include "platform/log.h"
#include "platform/notification_center.h"
#include "widgets/app_store_window.h"

namespace velmara {
namespace {

// What a first request loads would hold up a window that is not there yet.
constexpr std::chrono::milliseconds kSendingBegins(300);

}  // namespace

void AppDelegate::trackInstall() {
  UserDefaults& defaults = environment_.defaults;
  if (defaults.value(defaults_keys::kTrackedForAppStore).isValid()) return;
  TrackerSetup setup;
  setup.addresses = environment_.addresses;
  setup.send = [http = environment_.http, stop = servicesEnd_.get_token()](
                   const HttpRequest& request) { return post(request, http, stop); };
  setup.async = [this](const std::function<void()>& task) {
    QTimer::singleShot(kSendingBegins, this, [task] { globalQueue().async(task); });
  };
  setup.serialNumber = environment_.serialNumber;
  setup.isSilent = environment_.asksForNoTracking;
  tracker = Tracker::initWithApp(Tracker::kApplicationCode, std::move(setup));
  tracker->crossTrackingForProductId(Tracker::kProductId);
  defaults.set(defaults_keys::kTrackedForAppStore, QStringLiteral("TRACKING CALLED"));
}

void AppDelegate::registerReachability() {
  defaultCenter().addObserver(
      *this, notifications::kNetworkReachabilityChanged,
      [this](const Notification& changed) { reachabilityChanged(changed); });
  internetReachability = Reachability::reachabilityForInternetConnection();
  internetReachability->startNotifier();
  updateInterfaceWithReachability(*internetReachability);
}

void AppDelegate::reachabilityChanged(const Notification& notification) {
  const auto* monitor = std::any_cast<std::shared_ptr<Reachability>>(&notification.object);
  if (monitor != nullptr && *monitor != nullptr) updateInterfaceWithReachability(**monitor);
}

void AppDelegate::updateInterfaceWithReachability(Reachability& monitor) {
  networkStatus = monitor.currentReachabilityStatus();
  isInternetAvailable = networkStatus != kNotReachable;
  isInternetAvailableUsingWiFi = networkStatus == kReachableViaWiFi;
  isInternetAvailableUsingDataProvider = networkStatus == kReachableViaWWAN;
  connectionRequired = monitor.connectionRequired();
  logFormat("Internet Available : %s", isInternetAvailable ? "YES" : "NO");
}

FeedbackUploads& AppDelegate::uploads() {
  if (uploads_ == nullptr) {
    FeedbackUploadSetup setup;
    setup.sources = {.homeDirectory = environment_.home,
                     .bundle = environment_.bundle,
                     .addresses = environment_.addresses,
                     .serialNumber = environment_.serialNumber};
    setup.http = environment_.http;
    setup.mainQueue = &mainQueue();
    setup.globalQueue = &globalQueue();
    uploads_ = std::make_unique<FeedbackUploads>(std::move(setup));
  }
  return *uploads_;
}

// A route that was missed at the start, or since, is no reason to refuse.
bool AppDelegate::asksForInternet() {
  if (!isInternetAvailable) {
    internetReachability->startNotifier();
    updateInterfaceWithReachability(*internetReachability);
  }
  return isInternetAvailable;
}

void AppDelegate::showFeedback() {
  if (feedbackController_ == nullptr) {
    FeedbackServices services{.alerts = environment_.alerts, .panels = environment_.panels};
    services.reachesNobody = reachesNobody(environment_.addresses.feedbackEndpoint);
    services.isInternetAvailable = [this] { return asksForInternet(); };
    services.extractInfoAndSendFeedback = [this](const FeedbackForm& form) {
      uploads().extractInfoAndSendFeedback(true, environment_.addresses.supportEmail, form);
    };
    services.describe = [this](const FeedbackForm& form, auto receiver) {
      uploads().describe(form, std::move(receiver));
    };
    services.proposedFileName = [this] { return uploads().proposedFileName(); };
    services.saveReport = [this](const FeedbackForm& form, const std::string& path, auto saved) {
      uploads().saveReport(form, path, std::move(saved));
    };
    feedbackController_ = new FeedbackWindowController(std::move(services), windowMain());
  }
  feedbackController_->showSheet();
}

void AppDelegate::endServices() {
  servicesEnd_.request_stop();
  uploads_.reset();
}

}  // namespace velmara
