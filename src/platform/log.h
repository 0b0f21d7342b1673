#pragma once

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

}  // namespace velmara
