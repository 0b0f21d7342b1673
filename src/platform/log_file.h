#pragma once

#include <cstdint>
#include <string>

namespace velmara {

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

/// Begins a new log file if the one that standard error goes to has become too long; nothing if it
/// goes elsewhere. Any thread.
void rotateLogFile();

/// The user's home directory, from $HOME or else from the user database.
std::string homeDirectory();

}  // namespace velmara
