#include "session/rate_invitation.h"

#include <QCoreApplication>

#include <limits>

namespace velmara {
namespace {

constexpr qlonglong kExportsBetweenInvitations = 7;

struct RatingText {
  Q_DECLARE_TR_FUNCTIONS(Rating)
};

}  // namespace

bool isInvitationOpen(const UserDefaults& defaults, const std::string& CFBundleVersion) {
  return defaults.value(defaults_keys::kAppVersion).toString().toStdString() != CFBundleVersion;
}

bool showAlertForRateApp(UserDefaults& defaults) {
  bool isStored = false;
  const qlonglong stored = defaults.value(defaults_keys::kRateMeCount).toLongLong(&isStored);
  const qlonglong count = isStored ? stored : kExportsBetweenInvitations;
  const bool invites = count == kExportsBetweenInvitations;
  const bool isLast = count == std::numeric_limits<qlonglong>::max();
  defaults.set(defaults_keys::kRateMeCount, invites ? qlonglong{1} : count + (isLast ? 0 : 1));
  defaults.synchronize();
  return invites;
}

Alert rateInvitation() {
  return {RatingText::tr("Would you like to rate the app on the Mac App Store?").toStdString(),
          {},
          {RatingText::tr("YES").toStdString(), RatingText::tr("NO").toStdString()}};
}

void invitationAccepted(UserDefaults& defaults, const std::string& CFBundleVersion) {
  defaults.set(defaults_keys::kAppVersion, QString::fromStdString(CFBundleVersion));
}

}  // namespace velmara
