#include "session/rate_invitation.h"

#include <QCoreApplication>

#include <limits>

namespace velmara {
namespace {

constexpr std::int64_t kExportsBetweenInvitations = 7;

std::string translated(const char* source) {
  return QCoreApplication::translate("Rating", source).toStdString();
}

}  // namespace

bool isInvitationOpen(const UserDefaults& defaults, const std::string& CFBundleVersion) {
  return defaults.stringForKey(defaults_keys::kAppVersion) != CFBundleVersion;
}

bool showAlertForRateApp(UserDefaults& defaults) {
  const auto stored = defaults.integerForKey(defaults_keys::kRateMeCount);
  const std::int64_t count = stored.value_or(kExportsBetweenInvitations);
  const bool invites = count == kExportsBetweenInvitations;
  const bool isLast = count == std::numeric_limits<std::int64_t>::max();
  defaults.setInteger(defaults_keys::kRateMeCount, invites ? 1 : count + (isLast ? 0 : 1));
  defaults.synchronize();
  return invites;
}

Alert rateInvitation() {
  return {translated("Would you like to rate the app on the Mac App Store?"),
          {},
          {translated("YES"), translated("NO")}};
}

void invitationAccepted(UserDefaults& defaults, const std::string& CFBundleVersion) {
  defaults.setString(defaults_keys::kAppVersion, CFBundleVersion);
}

std::string rateAddress(const std::string& bundleIdentifier) {
  return "appstream://" + bundleIdentifier;
}

}  // namespace velmara
