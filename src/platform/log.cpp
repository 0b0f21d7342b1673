#include "platform/log.h"

#include <QByteArray>
#include <QDateTime>

#include <cstdarg>
#include <cstdio>
#include <mutex>
#include <string>
#include <unistd.h>
#include <utility>

#include "platform/log_file.h"

namespace velmara {
namespace {

std::mutex sinkMutex;
LogSink& currentSink() {
  static LogSink sink;
  return sink;
}

// One write call a line, so that lines of several threads and processes do not mix.
void writeToStandardError(std::string_view text) {
  const QByteArray time =
      QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd hh:mm:ss.zzz")).toLatin1();
  std::string line(time.constData(), static_cast<std::size_t>(time.size()));
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
  if (sink) {
    sink(std::string(text));
  } else {
    writeToStandardError(text);
  }
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

}  // namespace velmara
