// The cross-promotion window: its quit rule, and the message about its buttons.
#include <QCheckBox>

#include "app/app_delegate.h"
#include "services/tracker.h"

namespace velmara {

void AppDelegate::windowWillClose(QObject* window) {
  if (window == nullptr || window != windowSubscription) return;
  if (btnCheckDontShow != nullptr && btnCheckDontShow->isChecked()) {
    environment_.defaults.set(defaults_keys::kNotShowPromotionWindow, true);
  }
  terminateApp();
}

void AppDelegate::fireTweakTuneupHit(const std::string& button, const std::string& forTheProduct,
                                     const std::string& toProductId,
                                     const std::string& fromProductId) {
  const JsonDictionary message =
      clickTrackingMessage(button, forTheProduct, toProductId, fromProductId,
                           environment_.serialNumber().value_or(std::string()));
  openURLAsync(getURLForTATTracking(baseTrackURL), Tracker::getJSONFromDict(message));
}

}  // namespace velmara
