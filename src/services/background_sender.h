#pragma once

#include <memory>
#include <optional>
#include <string>

#include "services/http_connection.h"

namespace velmara {

/// Sends requests from threads that may wait. One for the process; any thread.
class BackgroundSender {
 public:
  explicit BackgroundSender(HttpOptions options = {});
  BackgroundSender(const BackgroundSender&) = delete;
  BackgroundSender& operator=(const BackgroundSender&) = delete;
  ~BackgroundSender();

  /// Sends a request and waits for the answer's body, whatever its status, of which the first
  /// 64 KiB are kept; nothing if there was no answer. Not on the main thread.
  std::optional<std::string> send(const HttpRequest& request);

  /// Ends what is under way and refuses all that follows. The senders' threads are free within
  /// moments. Does not wait.
  void shutDown();

 private:
  struct Running;
  struct State;
  std::shared_ptr<State> state_;  ///< outlives this object while a thread is in send()
};

}  // namespace velmara
