#pragma once

#include <algorithm>
#include <mutex>
#include <string>
#include <vector>

#include "platform/log.h"

namespace velmara::testing_support {

/// Keeps what is logged, on whatever thread, instead of writing it.
class LogCapture {
 public:
  LogCapture()
      : before_(setLogSink([this](const std::string& line) {
          const std::scoped_lock lock(mutex_);
          lines_.push_back(line);
        })) {}
  LogCapture(const LogCapture&) = delete;
  LogCapture& operator=(const LogCapture&) = delete;
  ~LogCapture() { setLogSink(before_); }

  std::vector<std::string> lines() const {
    const std::scoped_lock lock(mutex_);
    return lines_;
  }

 private:
  mutable std::mutex mutex_;
  std::vector<std::string> lines_;
  LogSink before_;
};

}  // namespace velmara::testing_support
