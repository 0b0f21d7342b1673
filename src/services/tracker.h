#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/task_queue.h"
#include "services/http_request.h"
#include "services/json_text.h"
#include "services/service_addresses.h"

namespace velmara {

/// What the tracker works with.
struct TrackerSetup {
  ServiceAddresses addresses;
  /// Sends a request, waits, and gives the answer's body; see BackgroundSender::send. Called on the
  /// queue; must be callable as long as a task is on it.
  std::function<std::optional<std::string>(const HttpRequest&)> send;
  TaskQueue* queue = nullptr;  ///< the global queue
  std::function<std::optional<std::string>()> serialNumber;
  /// DO_NOT_TRACK: everything runs as usual, but no request is made.
  bool isSilent = false;
};

/// Reports the install to the maker's tracking service. Calls return at once; a report that is
/// being sent keeps its tracker alive.
class Tracker : public std::enable_shared_from_this<Tracker> {
 public:
  static constexpr const char* kApplicationCode = "vlpro";
  static constexpr const char* kProductId = "10931";

  static std::shared_ptr<Tracker> initWithApp(const std::string& app, TrackerSetup setup);

  /// Sends the install report of a product.
  void crossTrackingForProductId(const std::string& productId);

  /// See jsonFromDictionary.
  static std::string getJSONFromDict(const JsonDictionary& dictionary);

  /// Posts JSON to an address from the queue and takes the tracking id out of the answer. Nothing
  /// is reported to the user and nothing is tried again.
  void openURLAsync(const std::string& url, const std::string& json);

  std::string baseTrackURL;
  std::string macSerialNumber;  ///< "DUMMYSERIAL" if there is none
  std::string frmApp;
  std::atomic<std::uint64_t> tid = 0;  ///< 0 until an answer carries one; written on the queue
  std::string appStoreTrackURL;
  std::vector<std::string> productIds;

 private:
  explicit Tracker(TrackerSetup setup) : setup_(std::move(setup)) {}
  void post(const std::string& url, const std::string& json);
  void takeAnswer(const std::string& answer);

  TrackerSetup setup_;
};

/// The request that carries JSON. Its body is as many bytes of the JSON as the JSON has UTF-16
/// units, which is all of it for ASCII.
HttpRequest jsonRequest(const std::string& url, const std::string& json);

/// The value of "tid" in an answer, if the answer is a JSON object that has it as a number.
std::optional<std::uint64_t> trackingIdIn(const std::string& answer);

}  // namespace velmara
