#pragma once

#include <string>

namespace velmara {

/// The log file of this user: "Library/Logs/NAME.log" under the home directory.
std::string logFilePath(const std::string& home, const std::string& bundleName);

/// Logs "LogPath PATH" to where standard error goes now, then sends standard error to the end of
/// that file; the file and its folders are made if they are missing. If that fails, standard error
/// stays where it was. Returns the path. Before other threads exist.
std::string redirectStandardErrorToLogFile(const std::string& home, const std::string& bundleName);

/// The user's home directory, from $HOME or else from the user database.
std::string homeDirectory();

}  // namespace velmara
