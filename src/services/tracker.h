#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "services/http_client.h"
#include "services/service_addresses.h"

namespace velmara {

/// A text or a number.
using JsonValue = std::variant<std::string, std::int64_t, double>;

/// Values by key, in the order in which they are written.
using JsonDictionary = std::vector<std::pair<std::string, JsonValue>>;

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

/// What the tracker works with.
struct TrackerSetup {
  /// Where reports go.
  ServiceAddresses addresses;
  /// Sends a request and waits for the answer; see post(). Called by the task.
  std::function<HttpAnswer(const HttpRequest&)> send;
  /// Hands a task to the global queue, now or later.
  std::function<void(std::function<void()> task)> async;
  /// The machine's; nothing where it cannot be read.
  std::function<std::optional<std::string>()> serialNumber;
  /// DO_NOT_TRACK: everything runs as usual, but no request is made.
  bool isSilent = false;
};

/// Reports the install to the maker's tracking service. Calls return at once; a report that is
/// being sent keeps its tracker alive.
class Tracker : public std::enable_shared_from_this<Tracker> {
 public:
  /// What this program is called there.
  static constexpr const char* kApplicationCode = "vlpro";
  static constexpr const char* kProductId = "10931";

  /// A tracker for an application. Nothing is sent yet.
  static std::shared_ptr<Tracker> initWithApp(const std::string& app, TrackerSetup setup);

  /// Sends the install report of a product.
  void crossTrackingForProductId(const std::string& productId);

  /// Flat JSON text without white space: texts in quotes, numbers bare. Nothing is escaped, so a
  /// key or text that holds a double quote gives invalid JSON.
  static std::string getJSONFromDict(const JsonDictionary& dictionary);

  /// Posts JSON to an address in the background and takes the tracking id out of the answer.
  /// Nothing is reported to the user and nothing is tried again.
  void openURLAsync(const std::string& url, const std::string& json);

  /// Where reports go.
  std::string baseTrackURL;
  std::string macSerialNumber;  ///< "DUMMYSERIAL" if there is none
  /// The application's code.
  std::string frmApp;
  std::atomic<std::uint64_t> tid = 0;  ///< 0 until an answer carries one; written by the task
  /// The address of the install report, and the maker's products, of which there are none here.
  std::string appStoreTrackURL;
  std::vector<std::string> productIds;

 private:
  explicit Tracker(TrackerSetup setup) : setup_(std::move(setup)) {}
  void post(const std::string& url, const std::string& json);

  TrackerSetup setup_;
};

}  // namespace velmara
