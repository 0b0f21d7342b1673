#include "platform/log.h"

#include <QDateTime>

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <mutex>
#include <pwd.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace velmara {
namespace {

struct LogFile {
  std::string path;  ///< empty while standard error is not sent to it
  std::int64_t largest = 0;
};

std::mutex sinkMutex;
LogSink& currentSink() {
  static LogSink sink;
  return sink;
}

std::mutex logFileMutex;
LogFile& logFile() {
  static LogFile file;
  return file;
}

bool sendStandardErrorTo(const std::string& path) {
  // Not freopen: when that fails, the old stream is already closed.
  constexpr mode_t kMode = 0666;
  const int file = ::open(path.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, kMode);
  if (file < 0) return false;
  std::fflush(stderr);
  const bool isSent = ::dup2(file, STDERR_FILENO) >= 0;
  ::close(file);
  return isSent;
}

// Begins a new log file if the one that standard error goes to has become too long; nothing if it
// goes elsewhere.
void rotateLogFile() {
  struct stat open {};
  struct stat named {};
  const std::scoped_lock lock(logFileMutex);
  const auto& [path, largest] = logFile();
  if (path.empty() || ::fstat(STDERR_FILENO, &open) != 0 || open.st_size <= largest) return;
  // Another process may have put it away already, or be about to.
  if (::flock(STDERR_FILENO, LOCK_EX | LOCK_NB) != 0) return;
  const int locked = ::dup(STDERR_FILENO);
  const bool isNamed = ::stat(path.c_str(), &named) == 0 && named.st_ino == open.st_ino &&
                       named.st_dev == open.st_dev;
  if (!isNamed || ::rename(path.c_str(), (path + ".1").c_str()) == 0) sendStandardErrorTo(path);
  ::flock(locked, LOCK_UN);
  ::close(locked);
}

// One write call a line, so that lines of several threads and processes do not mix.
void writeToStandardError(std::string_view text) {
  std::string line =
      QDateTime::currentDateTime().toString(u"yyyy-MM-dd hh:mm:ss.zzz").toStdString();
  line.append(" Velmara[").append(std::to_string(::getpid())).append("] ");
  line.append(text).push_back('\n');
  std::string_view rest = line;
  while (!rest.empty()) {
    const ssize_t written = ::write(STDERR_FILENO, rest.data(), rest.size());
    if (written <= 0) return;
    rest.remove_prefix(static_cast<std::size_t>(written));
  }
  rotateLogFile();
}

}  // namespace

void logLine(std::string_view text) {
  LogSink sink;
  {
    const std::scoped_lock lock(sinkMutex);
    sink = currentSink();
  }
  sink ? sink(std::string(text)) : writeToStandardError(text);
}

void logFormat(const char* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  char* text = nullptr;
  const int length = ::vasprintf(&text, format, arguments);
  va_end(arguments);
  if (length < 0) return;
  logLine({text, static_cast<std::size_t>(length)});
  std::free(text);  // NOLINT(cppcoreguidelines-no-malloc): vasprintf allocates with malloc
}

LogSink setLogSink(LogSink sink) {
  const std::scoped_lock lock(sinkMutex);
  return std::exchange(currentSink(), std::move(sink));
}

LogSink silentLog() {
  return [](const std::string&) {};
}

std::string logFilePath(const std::string& home, const std::string& bundleName) {
  return (std::filesystem::path(home) / "Library" / "Logs" / (bundleName + ".log")).string();
}

std::string redirectStandardErrorToLogFile(const std::string& home, const std::string& bundleName,
                                           std::int64_t largest) {
  std::string path = logFilePath(home, bundleName);
  logLine("LogPath " + path);
  std::error_code ignored;
  std::filesystem::create_directories(std::filesystem::path(path).parent_path(), ignored);
  if (sendStandardErrorTo(path)) {
    const std::scoped_lock lock(logFileMutex);
    logFile() = {path, largest};
  }
  rotateLogFile();
  return path;
}

std::string homeDirectory() {
  const char* home = std::getenv("HOME");  // NOLINT(concurrency-mt-unsafe)
  if (home != nullptr && *home != '\0') return home;
  const passwd* entry = ::getpwuid(::getuid());
  return entry != nullptr ? entry->pw_dir : "/";
}

}  // namespace velmara
