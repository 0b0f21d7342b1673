#pragma once

#include <chrono>
#include <cstddef>
#include <stop_token>
#include <string>

namespace velmara {

/// The most that is ever taken of a log; of a longer recent part the oldest lines are left out.
inline constexpr std::size_t kLargestLogPart = std::size_t{64} * 1024 * 1024;

/// The recent part of a log: from the first line that begins with the date of one of the last
/// sixteen days to the end, every line followed by "\n"; empty if no line does. Lines end at any
/// newline character of Unicode. What comes before that line is read but not held. Invalid UTF-8 is
/// replaced by U+FFFD. Empty too when the file cannot be read or `stop` asks to end. Any thread; a
/// long file takes a while.
std::string readLogsContent(const std::string& path, std::chrono::system_clock::time_point now,
                            const std::stop_token& stop = {},
                            std::size_t largest = kLargestLogPart);

}  // namespace velmara
