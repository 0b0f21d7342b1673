#include "services/background_sender.h"

#include <QEventLoop>

#include <algorithm>
#include <mutex>
#include <utility>
#include <vector>

namespace velmara {

// One exchange under way; the receiver lives on the thread that waits.
struct BackgroundSender::Running {
  QObject receiver;
  HttpConnection* connection = nullptr;
};

struct BackgroundSender::State {
  std::mutex mutex;
  bool isShutDown = false;
  std::vector<Running*> running;
  HttpOptions options;
};

BackgroundSender::BackgroundSender(HttpOptions options) : state_(std::make_shared<State>()) {
  state_->options = std::move(options);
}

BackgroundSender::~BackgroundSender() {
  shutDown();
}

std::optional<std::string> BackgroundSender::send(const HttpRequest& request) {
  constexpr std::size_t kMostKept = std::size_t{64} * 1024;
  const std::shared_ptr<State> state = state_;
  QEventLoop loop;
  std::string answer;
  bool answered = false;
  HttpEvents events;
  events.didReceiveData = [&](std::string_view piece) {
    answer.append(piece.substr(0, kMostKept - std::min(kMostKept, answer.size())));
  };
  events.ended = [&](const HttpOutcome& outcome) {
    answered = outcome.end == HttpOutcome::End::kFinished;
    loop.quit();
  };
  HttpConnection connection(request, state->options, std::move(events));
  Running self;
  self.connection = &connection;
  {
    const std::scoped_lock lock(state->mutex);
    if (state->isShutDown) return std::nullopt;
    state->running.push_back(&self);
  }
  connection.start();
  loop.exec();
  {
    const std::scoped_lock lock(state->mutex);
    std::erase(state->running, &self);
  }
  if (!answered) return std::nullopt;
  return answer;
}

void BackgroundSender::shutDown() {
  const std::scoped_lock lock(state_->mutex);
  state_->isShutDown = true;
  for (Running* running : state_->running) {
    QMetaObject::invokeMethod(
        &running->receiver, [connection = running->connection] { connection->cancel(); },
        Qt::QueuedConnection);
  }
}

}  // namespace velmara
