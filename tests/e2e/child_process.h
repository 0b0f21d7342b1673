#pragma once

#include <QProcess>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <optional>
#include <string>
#include <sys/prctl.h>
#include <thread>
#include <utility>
#include <vector>

namespace velmara::e2e {

using std::chrono::milliseconds;

/// Long enough for a busy machine and for a program slowed down by sanitizers.
inline constexpr milliseconds kDeadline{40'000};

/// Looks until the condition holds; false if it does not within the deadline.
template <typename Condition>
bool waitUntil(Condition condition, milliseconds betweenLooks = milliseconds(15)) {
  const auto end = std::chrono::steady_clock::now() + kDeadline;
  do {
    if (condition()) return true;
    std::this_thread::sleep_for(betweenLooks);
  } while (std::chrono::steady_clock::now() < end);
  return condition();
}

/// A program that runs beside the test; killed when this goes, and also when the test dies.
class ChildProcess {
 public:
  /// The environment is beside or instead of ours. Output and errors go to the file.
  ChildProcess(const std::vector<std::string>& words,
               const std::vector<std::pair<std::string, std::string>>& environment,
               const std::string& outputFile) {
    QProcessEnvironment all = QProcessEnvironment::systemEnvironment();
    for (const auto& [name, value] : environment) {
      all.insert(QString::fromStdString(name), QString::fromStdString(value));
    }
    QStringList arguments;
    for (const std::string& word : words) arguments << QString::fromStdString(word);
    process_.setProcessEnvironment(all);
    process_.setProcessChannelMode(QProcess::MergedChannels);
    process_.setStandardInputFile(QProcess::nullDevice());
    process_.setStandardOutputFile(QString::fromStdString(outputFile), QIODevice::Append);
    process_.setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGKILL); });
    process_.start(arguments.takeFirst(), arguments);
    process_.waitForStarted();
  }
  ~ChildProcess() { kill(); }

  qint64 pid() const { return process_.processId(); }
  bool isRunning() {
    return process_.state() != QProcess::NotRunning && !process_.waitForFinished(0);
  }
  /// Waits for its end; -1 if a signal ended it, nothing if it is still running at the deadline.
  std::optional<int> waitForEnd(milliseconds deadline = kDeadline) {
    if (isRunning() && !process_.waitForFinished(static_cast<int>(deadline.count()))) return {};
    return process_.exitStatus() == QProcess::NormalExit ? process_.exitCode() : -1;
  }
  void kill() {
    process_.kill();
    process_.waitForFinished();
  }

 private:
  QProcess process_;
};

}  // namespace velmara::e2e
