#pragma once

#include <string>

#include "platform/panels.h"
#include "platform/user_defaults.h"

namespace velmara {

/// The invitation to rate the program: on the first export of a store and then on every seventh,
/// until it is accepted for the version at hand. Main thread.

/// Whether exports are counted at all: not once the invitation was accepted for this version.
bool isInvitationOpen(const UserDefaults& defaults, const std::string& CFBundleVersion);

/// Counts one export, in memory that lasts; true when the invitation is to be shown now.
bool showAlertForRateApp(UserDefaults& defaults);

/// The invitation; button 0 accepts it.
Alert rateInvitation();

/// The page of the program was opened: ends the invitations for this version.
void invitationAccepted(UserDefaults& defaults, const std::string& CFBundleVersion);

}  // namespace velmara
