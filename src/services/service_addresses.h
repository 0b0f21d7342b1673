#pragma once

#include <string>

class QUrl;

namespace velmara {

/// The addresses of the maker's services. What a build uses is set when it is configured
/// (VELMARA_TRACKING_URL and so on); by default they lie under a reserved domain that never
/// resolves, so such a build reaches nobody.
struct ServiceAddresses {
  std::string trackingService;    ///< install registration, without "/registerAppInstalls"
  std::string baseTrackURL;       ///< click tracking, without "/CrossTracking"
  std::string feedbackEndpoint;   ///< where feedback is posted to
  std::string feedbackNamespace;  ///< namespace URI of the feedback service, ends in "/"
  std::string supportEmail;       ///< the maker's support address
  std::string supportPage;        ///< the maker's support web page
  std::string storePage;          ///< where the program may be rated; empty: nowhere
  std::string buyNowPattern;      ///< the product's web site; "%@" stands for its name
};

/// The addresses this program was built with.
const ServiceAddresses& configuredAddresses();

/// Whether nobody can be behind an address: it is not one of the web, it carries a name or password
/// (which would go to whoever answers), or it lies under the reserved domain "invalid".
bool reachesNobody(const QUrl& address);
bool reachesNobody(const std::string& address);

}  // namespace velmara
