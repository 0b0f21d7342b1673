// A log file, of which the recent part goes along with feedback.
#include <QString>

#include <chrono>

#include "fuzzing.h"
#include "services/recent_log.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace velmara;
  using fuzzing::require;
  const std::string path = fuzzing::fileOf(fuzzing::textOf(data, size));
  const std::chrono::system_clock::time_point now{std::chrono::seconds(1'700'000'000)};
  for (const std::size_t largest : {kLargestLogPart, std::size_t{40}}) {
    const auto log = readLogsContent(path, now, {}, largest);
    require(log.has_value(), "a log that is there is read");
    require(log->size() <= std::min(size, largest), "no more is taken than wanted");
    const TextSource source = log->text();
    std::string text;
    for (std::string piece = source(); !piece.empty(); piece = source()) text += piece;
    require(text.empty() || text.back() == '\n', "every line ends");
    require(QString::fromStdString(text).toStdString() == text, "what is sent is UTF-8");
    require(log->newest(20).size() <= 20 * 3, "the newest is no more than asked for");
  }
  return 0;
}
