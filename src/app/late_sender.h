#pragma once

#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

#include "services/background_sender.h"
#include "services/http_connection.h"

namespace velmara {

/// A sender that is made when something is first sent, on the thread that sends, and not before the
/// window is there: getting ready for TLS takes a while, and loads libraries that the window would
/// wait for. Any thread.
class LateSender {
 public:
  explicit LateSender(std::function<HttpOptions()> options) : options_(std::move(options)) {}

  /// From now on things are sent; those who want to until then wait.
  void begin();

  /// See BackgroundSender::send.
  std::optional<std::string> send(const HttpRequest& request);

  /// See BackgroundSender::shutDown; nothing is made afterwards.
  void shutDown();

 private:
  std::shared_ptr<BackgroundSender> sender();

  std::function<HttpOptions()> options_;
  std::mutex mutex_;
  std::condition_variable changed_;
  bool hasBegun_ = false;
  std::shared_ptr<BackgroundSender> sender_;
  bool isShutDown_ = false;
};

}  // namespace velmara
