#pragma once

#include <QFile>

#include <chrono>
#include <cstddef>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>

#include "services/text.h"

namespace velmara {

/// The most that is ever taken of a log; of a longer recent part the oldest lines are left out.
inline constexpr std::size_t kLargestLogPart = std::size_t{64} * 1024 * 1024;

/// The recent part of a log, read when it is needed and never held whole. Copies share the file,
/// which stays open, so that a log that is put away meanwhile is still the same text. One thread at
/// a time.
class RecentLog {
 public:
  /// Of a file the bytes from `begin` to `end`.
  RecentLog(std::shared_ptr<QFile> file, qint64 begin, qint64 end)
      : file_(std::move(file)), begin_(begin), end_(end) {}

  /// The part's length in the file, in bytes.
  std::size_t size() const { return static_cast<std::size_t>(end_ - begin_); }

  /// Its text: every line, the last one too, followed by "\n", invalid UTF-8 replaced by U+FFFD.
  /// Lines end at any newline character of Unicode. Each call reads from the beginning; a file that
  /// became shorter gives a text that ends too early.
  TextSource text() const;

  /// The last bytes of it as text, at most so many.
  std::string newest(std::size_t most) const;

 private:
  std::shared_ptr<QFile> file_;
  qint64 begin_;
  qint64 end_;
};

/// The recent part of a log: from the first line that begins with the date of one of the last
/// sixteen days to what is the end now. It is empty if no line does, or when `stop` asks to end;
/// nothing if there is no such file. Any thread; a long file takes a while.
std::optional<RecentLog> readLogsContent(const std::string& path,
                                         std::chrono::system_clock::time_point now,
                                         const std::stop_token& stop = {},
                                         std::size_t largest = kLargestLogPart);

}  // namespace velmara
