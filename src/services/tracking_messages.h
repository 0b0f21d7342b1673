#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "services/http_client.h"

namespace velmara {

/// A text or a number.
using JsonValue = std::variant<std::string, std::int64_t, double>;

/// Values by key, in the order in which they are written.
using JsonDictionary = std::vector<std::pair<std::string, JsonValue>>;

/// Flat JSON text without white space: texts in quotes, numbers bare. Nothing is escaped, so a key
/// or text that holds a double quote gives invalid JSON.
std::string jsonFromDictionary(const JsonDictionary& dictionary);

/// The request that carries JSON. Its body is as many bytes of the JSON as the JSON has characters
/// (UTF-16 units), which is all of it for ASCII.
HttpRequest jsonRequest(const std::string& url, const std::string& json);

/// The value of "tid" in an answer, if the answer is a JSON object that has it as a number.
std::optional<std::uint64_t> trackingIdIn(const std::string& answer);

/// The message about a button of the promotion window: which button, and from which product to
/// which. It is built but never sent.
JsonDictionary clickTrackingMessage(const std::string& button, const std::string& productCode,
                                    const std::string& toProductId,
                                    const std::string& fromProductId,
                                    const std::string& serialNumber);

/// Where such a message would go: the base address followed by "/CrossTracking".
std::string getURLForTATTracking(const std::string& baseTrackURL);

/// Whether the value of DO_NOT_TRACK (null if it is not set) asks for silence: any value but ""
/// and "0" does.
bool asksForNoTracking(const char* doNotTrack);

}  // namespace velmara
