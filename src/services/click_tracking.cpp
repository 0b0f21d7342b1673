#include "services/click_tracking.h"

namespace velmara {

JsonDictionary clickTrackingMessage(const std::string& button, const std::string& productCode,
                                    const std::string& toProductId,
                                    const std::string& fromProductId,
                                    const std::string& serialNumber) {
  // "from" is "vlpro" for every edition.
  return {{"from", "vlpro"}, {"to", productCode},       {"mac", serialNumber},
          {"btn", button},   {"fromid", fromProductId}, {"toid", toProductId}};
}

std::string getURLForTATTracking(const std::string& baseTrackURL) {
  return baseTrackURL + "/CrossTracking";
}

}  // namespace velmara
