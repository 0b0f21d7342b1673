#pragma once

#include <string>

#include "services/json_text.h"

namespace velmara {

/// The message about a button of the promotion window: which button, and from which product to
/// which. It is built but never sent.
JsonDictionary clickTrackingMessage(const std::string& button, const std::string& productCode,
                                    const std::string& toProductId,
                                    const std::string& fromProductId,
                                    const std::string& serialNumber);

/// Where such a message would go: the base address followed by "/CrossTracking".
std::string getURLForTATTracking(const std::string& baseTrackURL);

}  // namespace velmara
