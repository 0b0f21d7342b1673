#include "services/service_addresses.h"

namespace velmara {

const ServiceAddresses& configuredAddresses() {
  static const ServiceAddresses addresses{
      .trackingService = VELMARA_TRACKING_URL,
      .baseTrackURL = VELMARA_CLICK_TRACKING_URL,
      .feedbackEndpoint = VELMARA_FEEDBACK_URL,
      .feedbackNamespace = VELMARA_FEEDBACK_NAMESPACE,
      .supportEmail = VELMARA_SUPPORT_EMAIL,
      .supportPage = VELMARA_SUPPORT_PAGE,
      .buyNowPattern = VELMARA_BUY_NOW_PATTERN,
  };
  return addresses;
}

}  // namespace velmara
