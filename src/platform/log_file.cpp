#include "platform/log_file.h"

#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <pwd.h>
#include <system_error>
#include <unistd.h>

#include "platform/log.h"

namespace velmara {

std::string logFilePath(const std::string& home, const std::string& bundleName) {
  return (std::filesystem::path(home) / "Library" / "Logs" / (bundleName + ".log")).string();
}

std::string redirectStandardErrorToLogFile(const std::string& home, const std::string& bundleName) {
  std::string path = logFilePath(home, bundleName);
  logLine("LogPath " + path);
  std::error_code ignored;
  std::filesystem::create_directories(std::filesystem::path(path).parent_path(), ignored);
  // Not freopen: when that fails, the old stream is already closed.
  constexpr mode_t kMode = 0666;
  const int file = ::open(path.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, kMode);
  if (file < 0) return path;
  std::fflush(stderr);
  ::dup2(file, STDERR_FILENO);
  ::close(file);
  return path;
}

std::string homeDirectory() {
  const char* home = std::getenv("HOME");  // NOLINT(concurrency-mt-unsafe)
  if (home != nullptr && *home != '\0') return home;
  const passwd* entry = ::getpwuid(::getuid());
  return entry != nullptr ? entry->pw_dir : "/";
}

}  // namespace velmara
