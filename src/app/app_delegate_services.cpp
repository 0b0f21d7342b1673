// The services' seats: install tracking, reachability, feedback.
#include "app/app_delegate.h"
#include "app/late_sender.h"
#include "app/sheets/feedback_window_controller.h"
#include "platform/dispatch.h"
#include "platform/log.h"
#include "platform/notification_names.h"
#include "platform/timer.h"
#include "widgets/app_store_window.h"

namespace velmara {
namespace {

constexpr Seconds kSendingBegins(0.3);

}  // namespace

void AppDelegate::trackInstall() {
  UserDefaults& defaults = environment_.defaults;
  if (defaults.value(defaults_keys::kTrackedForAppStore).isValid()) return;
  TrackerSetup setup;
  setup.addresses = environment_.addresses;
  setup.send = [sender = sender_](const HttpRequest& request) { return sender->send(request); };
  setup.queue = &globalQueue();
  setup.serialNumber = environment_.serialNumber;
  setup.isSilent = environment_.asksForNoTracking;
  tracker = Tracker::initWithApp(Tracker::kApplicationCode, std::move(setup));
  eventLoopTimers().after(this, "begin", kSendingBegins, [sender = sender_] { sender->begin(); });
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
    setup.http = environment_.httpOptions();
    setup.mainQueue = &mainQueue();
    setup.globalQueue = &globalQueue();
    uploads_ = std::make_unique<FeedbackUploads>(std::move(setup));
  }
  return *uploads_;
}

void AppDelegate::showFeedback() {
  if (feedbackController_ == nullptr) {
    feedbackController_ = new FeedbackWindowController(
        {.alerts = environment_.alerts,
         .isInternetAvailable = [this] { return isInternetAvailable; },
         .extractInfoAndSendFeedback =
             [this](const FeedbackForm& form) {
               uploads().extractInfoAndSendFeedback(true, environment_.addresses.supportEmail,
                                                    form);
             },
         .describe =
             [this](const FeedbackForm& form, std::function<void(const FeedbackReport&)> receiver) {
               uploads().describe(form, std::move(receiver));
             }},
        windowMain());
  }
  feedbackController_->showSheet();
}

void AppDelegate::endServices() {
  sender_->shutDown();
  uploads_.reset();
}

}  // namespace velmara
