#pragma once

#include <QApplication>

#include <string>
#include <thread>

namespace velmara {

/// How long the main thread was busy in a while.
struct BusyTimes {
  /// The longest that an event of another thread had to wait for its turn, in milliseconds: how
  /// long a click may go unheard.
  double longestWait = 0.0;
  /// The single event with the most of this thread's processor time (what other programs took
  /// meanwhile is left out), its receiver's class, its name and the event's type.
  double longestEvent = 0.0;
  std::string event;
};

/// An application whose main thread is watched: another thread knocks every millisecond.
class WatchedApplication : public QApplication {
 public:
  WatchedApplication(int& argc, char** argv);

  bool notify(QObject* receiver, QEvent* event) override;

  /// The times since the last call.
  BusyTimes takeBusyTimes();

 private:
  void knock(const std::stop_token& stop);

  int levelOfEvent_ = 0;
  int deepestLevel_ = 0;
  BusyTimes times_;
  std::jthread watcher_;
};

}  // namespace velmara
