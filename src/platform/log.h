#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "base/task_queue.h"

namespace velmara {

/// Writes one line to the log: free text, no levels. By default to standard error, with the time
/// and the process in front. Line ends inside the text are kept. Any thread.
void logLine(std::string_view text);

/// printf-style form of logLine, for the texts that carry values.
[[gnu::format(printf, 1, 2)]] void logFormat(const char* format, ...);

/// Sends the log elsewhere; an empty sink restores standard error. Returns what was in force.
/// Any thread.
LogSink setLogSink(LogSink sink);

/// A sink that drops every line: what the command line uses unless it is asked to speak.
LogSink silentLog();

/// The log file of this user: "Library/Logs/NAME.log" under the home directory.
std::string logFilePath(const std::string& home, const std::string& bundleName);

/// How long a log file may become, in bytes.
inline constexpr std::int64_t kLargestLogFile = std::int64_t{8} * 1024 * 1024;

/// Logs "LogPath PATH" to where standard error goes now, then sends standard error to the end of
/// that file; the file and its folders are made if they are missing. If that fails, standard error
/// stays where it was. Returns the path. Before other threads exist.
///
/// A file that is longer than `largest`, now or after a line of logLine(), is put away as "PATH.1",
/// in the place of the one before it, and a new one begun. Several processes may share a log.
std::string redirectStandardErrorToLogFile(const std::string& home, const std::string& bundleName,
                                           std::int64_t largest = kLargestLogFile);

/// The user's home directory, from $HOME or else from the user database.
std::string homeDirectory();

}  // namespace velmara
