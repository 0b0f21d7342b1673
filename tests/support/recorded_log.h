#pragma once

#include <algorithm>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "platform/log.h"

namespace velmara::testing_support {

/// Takes the lines of the log, from any thread, for as long as it lives.
class RecordedLog {
 public:
  RecordedLog()
      : before_(setLogSink([this](const std::string& line) {
          const std::scoped_lock lock(mutex_);
          lines_.push_back(line);
        })) {}
  RecordedLog(const RecordedLog&) = delete;
  RecordedLog& operator=(const RecordedLog&) = delete;
  ~RecordedLog() { setLogSink(before_); }

  std::vector<std::string> lines() const {
    const std::scoped_lock lock(mutex_);
    return lines_;
  }
  /// Where a line that begins so first stands; -1 if none does.
  int find(std::string_view beginning) const {
    const std::scoped_lock lock(mutex_);
    const auto found = std::ranges::find_if(
        lines_, [&](const std::string& line) { return line.starts_with(beginning); });
    return found == lines_.end() ? -1 : static_cast<int>(found - lines_.begin());
  }
  void clear() {
    const std::scoped_lock lock(mutex_);
    lines_.clear();
  }

 private:
  mutable std::mutex mutex_;
  std::vector<std::string> lines_;
  LogSink before_;
};

}  // namespace velmara::testing_support
