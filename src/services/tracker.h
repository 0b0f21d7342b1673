#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "services/service_addresses.h"
#include "services/tracking_messages.h"

namespace velmara {

/// What the tracker works with.
struct TrackerSetup {
  ServiceAddresses addresses;
  /// Sends a request and waits for the answer; see post(). Called by the task.
  std::function<HttpAnswer(const HttpRequest&)> send;
  /// Hands a task to the global queue, now or later.
  std::function<void(std::function<void()> task)> async;
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

  /// Posts JSON to an address in the background and takes the tracking id out of the answer.
  /// Nothing is reported to the user and nothing is tried again.
  void openURLAsync(const std::string& url, const std::string& json);

  std::string baseTrackURL;
  std::string macSerialNumber;  ///< "DUMMYSERIAL" if there is none
  std::string frmApp;
  std::atomic<std::uint64_t> tid = 0;  ///< 0 until an answer carries one; written by the task
  std::string appStoreTrackURL;
  std::vector<std::string> productIds;

 private:
  explicit Tracker(TrackerSetup setup) : setup_(std::move(setup)) {}
  void post(const std::string& url, const std::string& json);
  void takeAnswer(const std::string& answer);

  TrackerSetup setup_;
};

}  // namespace velmara
