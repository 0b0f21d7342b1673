#include "app/late_sender.h"

namespace velmara {

std::shared_ptr<BackgroundSender> LateSender::sender() {
  {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [this] { return hasBegun_ || isShutDown_; });
    if (isShutDown_ || sender_ != nullptr) return sender_;
  }
  // Without the lock, which shutDown() must not wait for.
  auto made = std::make_shared<BackgroundSender>(options_());
  const std::scoped_lock lock(mutex_);
  if (!isShutDown_ && sender_ == nullptr) sender_ = std::move(made);
  return sender_;
}

void LateSender::begin() {
  const std::scoped_lock lock(mutex_);
  hasBegun_ = true;
  changed_.notify_all();
}

std::optional<std::string> LateSender::send(const HttpRequest& request) {
  const std::shared_ptr<BackgroundSender> known = sender();
  return known != nullptr ? known->send(request) : std::nullopt;
}

void LateSender::shutDown() {
  const std::scoped_lock lock(mutex_);
  isShutDown_ = true;
  changed_.notify_all();
  if (sender_ != nullptr) sender_->shutDown();
}

}  // namespace velmara
