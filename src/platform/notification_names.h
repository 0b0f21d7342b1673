#pragma once

#include <string_view>

/// The notifications of the default centre. The spellings are part of the interface.
namespace velmara::notifications {

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

}  // namespace velmara::notifications
