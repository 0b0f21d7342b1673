#pragma once

#include <string>
#include <vector>

namespace velmara {

/// A library the program is built with.
struct UsedLibrary {
  /// As its makers write it.
  std::string name;
  /// Of the build; Qt's is the one that runs.
  std::string version;
  /// Its licence, by the short names of SPDX.
  std::string licence;
};

/// The libraries the program calls itself, by name.
std::vector<UsedLibrary> usedLibraries();

/// The program's version and those of its libraries, a line each, for a report. The version is
/// Velmara's.
std::string versionsText(const std::string& version);

}  // namespace velmara
