#include "services/recent_log.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <sys/resource.h>

#include "services/local_date.h"
#include "support/scratch_folder.h"

namespace velmara {
namespace {

using testing_support::ScratchFolder;
using testing_support::writeFile;
using TimePoint = std::chrono::system_clock::time_point;

TimePoint localNoon(int year, int month, int day) {
  std::tm parts{};
  parts.tm_year = year - 1900;
  parts.tm_mon = month - 1;
  parts.tm_mday = day;
  parts.tm_hour = 12;
  parts.tm_isdst = -1;
  return std::chrono::system_clock::from_time_t(std::mktime(&parts));
}

const TimePoint kNow = localNoon(2024, 3, 10);

std::string recentOf(const std::string& log, std::size_t largest = kLargestLogPart) {
  const ScratchFolder folder;
  writeFile(folder.file("x.log"), log);
  return readLogsContent(folder.file("x.log"), kNow, {}, largest);
}

TEST(LocalDate, FormatsDateAndTimeOfTheUsersZone) {
  EXPECT_EQ(getDateStrInYYYYMMDDFormat(kNow), "2024-03-10");
  EXPECT_EQ(getDateInFormatNEW(kNow - std::chrono::minutes(175)), "20240310T0905");
}

TEST(RecentLog, BeginsAtTheFirstLineOfTheLastSixteenDays) {
  struct Case {
    std::string_view log;
    std::string_view expected;
  };
  for (const auto& [log, expected] : std::initializer_list<Case>{
           {"", ""},
           {"no date\n", ""},
           {"2024-03-10 a", "2024-03-10 a\n"},
           {"2024-03-10 a\n", "2024-03-10 a\n\n"},  // The empty line after the end is a line.
           {"2024-02-23 too old\n", ""},
           {"2024-02-23 too old\n2024-02-24 first\nundated\n2019-01-01 old",
            "2024-02-24 first\nundated\n2019-01-01 old\n"},
           {"2024-03-11 tomorrow\n2024-03-09 b", "2024-03-09 b\n"},
           {" 2024-03-10 indented\nx 2024-03-10", ""},
           {"old\r\n2024-03-10 a\r\nb", "2024-03-10 a\n\nb\n"},
           {"old\xE2\x80\xA9"
            "2024-03-10 a\xC2\x85"
            "b\xE2\x80\xA8"
            "c",
            "2024-03-10 a\nb\nc\n"},
           {"\xFF\xFE\n2024-03-10 \xFF<\xC3\xA9", "2024-03-10 \xEF\xBF\xBD<\xC3\xA9\n"},
       }) {
    EXPECT_EQ(recentOf(std::string(log)), expected) << log;
  }
}

// The date and the newline before it may be cut anywhere between two pieces of the file.
TEST(RecentLog, FindsTheLineWhereverItLies) {
  constexpr int kPiece = 256 * 1024;
  for (const std::string_view newline : {"\n", "\xE2\x80\xA8"}) {
    for (int length = kPiece - 50; length < kPiece + 3; ++length) {
      const std::string log = std::string(static_cast<std::size_t>(length), 'x');
      ASSERT_EQ(recentOf(log + std::string(newline) + "2024-03-10 a"), "2024-03-10 a\n") << length;
    }
  }
}

TEST(RecentLog, KeepsTheNewestLinesOfATooLongPart) {
  EXPECT_EQ(recentOf("2024-03-10 a\nbcdefgh\nij\nkl", 8), "ij\nkl\n");
}

TEST(RecentLog, GivesNothingForWhatIsNoFileOrWhenStopped) {
  const ScratchFolder folder;
  EXPECT_EQ(readLogsContent(folder.file("missing"), kNow), "");
  EXPECT_EQ(readLogsContent(folder.path().string(), kNow), "");
  writeFile(folder.file("x.log"), "2024-03-10 a");
  std::stop_source stop;
  stop.request_stop();
  EXPECT_EQ(readLogsContent(folder.file("x.log"), kNow, stop.get_token()), "");
}

TEST(RecentLog, DoesNotHoldTheOldPartOf500Megabytes) {
  const ScratchFolder folder;
  const std::string path = folder.file("x.log");
  {
    std::string lines;
    while (lines.size() < 1000000) lines += "2019-05-05 12:00:00 Velmara[1] Denoising Done !!\n";
    std::ofstream file(path, std::ios::binary);
    for (int count = 0; count < 500; ++count) file << lines;
    file << "2024-03-09 recent";
    ASSERT_TRUE(file.flush());
  }
  const auto peak = [] {
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;  // KiB
  };
  const long before = peak();
  EXPECT_EQ(readLogsContent(path, kNow), "2024-03-09 recent\n");
  EXPECT_LT(peak() - before, 16 * 1024);
}

}  // namespace
}  // namespace velmara
