#pragma once

#include <QObject>

#include <any>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>

namespace velmara {

/// Values by name.
using UserInfo = std::map<std::string, std::any, std::less<>>;

/// What an observer is given: the name, the poster's object (empty if there is none) and values by
/// name.
struct Notification {
  /// As the poster gave them.
  std::string name;
  std::any object;
  UserInfo userInfo;
};

/// Tells observers by name that something happened. Delivery is synchronous, on the posting thread,
/// in the order of registration; an observer removed during a delivery is not reached by it any
/// more, one added during it is not reached yet. Handlers must not throw. The list of observers may
/// be used from any thread.
class NotificationCenter {
 public:
  /// Called on the posting thread.
  using Handler = std::function<void(const Notification&)>;

  /// Ends its registration when it dies or is reset.
  using Token = std::shared_ptr<const void>;

  NotificationCenter();
  NotificationCenter(const NotificationCenter&) = delete;
  NotificationCenter& operator=(const NotificationCenter&) = delete;
  ~NotificationCenter();

  /// Delivers to all observers of the name before it returns.
  void post(std::string_view name, std::any object = {}, UserInfo userInfo = {});

  /// Registers a handler for as long as the owner lives. Each call adds a registration of its own.
  void addObserver(const QObject& owner, std::string_view name, Handler handler);

  /// Registers a handler for as long as the returned token lives; it may outlive the centre.
  [[nodiscard]] Token addObserver(std::string_view name, Handler handler);

  /// Ends all registrations of the owner.
  void removeObserver(const QObject& owner);

 private:
  struct Registry;
  std::shared_ptr<Registry> registry_;
};

/// The application's shared centre.
NotificationCenter& defaultCenter();

/// The notifications of the default centre. The spellings are part of the interface.
namespace notifications {

/// Menu Open was chosen; answered by the open panel.
inline constexpr std::string_view kOpenPhotoFromMenuTapped = "notificationOpenPhotoFromMenuTapped";
/// Menu Close was chosen; answered by closing with the unsaved-changes check.
inline constexpr std::string_view kClosePhotoFromMenuTapped =
    "notificationClosePhotoFromMenuTapped";
/// Menu Save or Save As was chosen; answered by the export.
inline constexpr std::string_view kSavePhotoFromMenuTapped = "notificationSavePhotoFromMenuTapped";
/// The main window is ready for its title bar; user info kWindowObject is that window.
inline constexpr std::string_view kSetupHeader = "notificationSetupHeader";
/// The split line moved, or was only laid out again: listeners must tolerate repeats.
inline constexpr std::string_view kSpliviewPositionMoved = "notificationSpliviewPositionMoved";
/// The feedback form was uploaded.
inline constexpr std::string_view kSubmitFeedback = "notificationSubmitFeedback";
/// The reachability changed; the object is the monitor.
inline constexpr std::string_view kNetworkReachabilityChanged =
    "kNetworkReachabilityChangedNotification";

/// Key of the user info of kSetupHeader.
inline constexpr std::string_view kWindowObject = "WINDOW_OBJECT";

}  // namespace notifications

}  // namespace velmara
