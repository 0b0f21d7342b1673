#include "services/service_addresses.h"

#include <QUrl>

namespace velmara {

const ServiceAddresses& configuredAddresses() {
  static const ServiceAddresses addresses{
      .trackingService = VELMARA_TRACKING_URL,
      .baseTrackURL = VELMARA_CLICK_TRACKING_URL,
      .feedbackEndpoint = VELMARA_FEEDBACK_URL,
      .feedbackNamespace = VELMARA_FEEDBACK_NAMESPACE,
      .supportEmail = VELMARA_SUPPORT_EMAIL,
      .supportPage = VELMARA_SUPPORT_PAGE,
      .storePage = VELMARA_STORE_PAGE,
      .buyNowPattern = VELMARA_BUY_NOW_PATTERN,
  };
  return addresses;
}

bool reachesNobody(const QUrl& address) {
  const bool isOfTheWeb =
      address.scheme() == QLatin1String("http") || address.scheme() == QLatin1String("https");
  const QString host = address.host();
  return !address.isValid() || !isOfTheWeb || host.isEmpty() || !address.userInfo().isEmpty() ||
         host.endsWith(QLatin1String(".invalid")) || host.endsWith(QLatin1String(".invalid."));
}

bool reachesNobody(const std::string& address) {
  return reachesNobody(QUrl(QString::fromStdString(address)));
}

}  // namespace velmara
