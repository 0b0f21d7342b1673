#include "services/recent_log.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>

#include "services/text.h"
#include "support/scratch_folder.h"

namespace velmara {
namespace {

using namespace testing_support;

// Noon of 10 March 2024 where the user is.
const auto kNow = [] {
  std::tm parts{};
  parts.tm_year = 124;
  parts.tm_mon = 2;
  parts.tm_mday = 10;
  parts.tm_hour = 12;
  parts.tm_isdst = -1;
  return std::chrono::system_clock::from_time_t(std::mktime(&parts));
}();

std::string allOf(const TextSource& text) {
  std::string all;
  for (std::string piece = text(); !piece.empty(); piece = text()) {
    EXPECT_LE(piece.size(), std::size_t{1} << 20) << "pieces stay small";
    all += piece;
  }
  return all;
}

std::string recentOf(const std::string& log, std::size_t largest = kLargestLogPart) {
  const ScratchFolder folder;
  writeFile(folder.file("x.log"), log);
  return allOf(readLogsContent(folder.file("x.log"), kNow, {}, largest)->text());
}

TEST(LocalDate, FormatsDateAndTimeOfTheUsersZone) {
  EXPECT_EQ(getDateStrInYYYYMMDDFormat(kNow), "2024-03-10");
  EXPECT_EQ(getDateInFormatNEW(kNow - std::chrono::minutes(175)), "20240310T0905");
}

TEST(RecentLog, BeginsAtTheFirstLineOfTheLastSixteenDays) {
  for (const auto& [log, expected] : std::initializer_list<std::pair<std::string, std::string>>{
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
    EXPECT_EQ(recentOf(log), expected) << log;
  }
  EXPECT_EQ(recentOf("2024-03-10 a\nbcdefgh\nij\nkl", 8), "ij\nkl\n") << "too long a part";
  EXPECT_EQ(recentOf("2024-03-10 a", 12), "2024-03-10 a\n") << "as long as it may be";
}

// The date and the newline before it may be cut anywhere between two pieces of the file, and so may
// the characters after it.
TEST(RecentLog, IsTheSameWhereverItLies) {
  constexpr int kPiece = 256 * 1024;
  for (const std::string_view newline : {"\n", "\xE2\x80\xA8"}) {
    for (int length = kPiece - 50; length < kPiece + 3; ++length) {
      const std::string log = std::string(static_cast<std::size_t>(length), 'x');
      ASSERT_EQ(recentOf(log + std::string(newline) + "2024-03-10 a"), "2024-03-10 a\n") << length;
    }
  }
  for (int length = kPiece - 16; length < kPiece; ++length) {
    const std::string line =
        "2024-03-10 " + std::string(static_cast<std::size_t>(length - 11), 'x');
    ASSERT_EQ(recentOf(line + "\xF0\x9F\x98\x80\xE2\x80\xA8\xF0\x9F"),
              line + "\xF0\x9F\x98\x80\n\xEF\xBF\xBD\xEF\xBF\xBD\n")
        << length;
  }
}

TEST(RecentLog, StaysTheSameTextWhatEverBecomesOfTheFile) {
  const ScratchFolder folder;
  const std::string path = folder.file("x.log");
  writeFile(path, "old\n2024-03-10 a\nb\xFF");
  const RecentLog log = *readLogsContent(path, kNow);
  EXPECT_EQ(log.size(), 15U);
  EXPECT_EQ(log.newest(2), "b\xEF\xBF\xBD");
  EXPECT_EQ(log.newest(100), "2024-03-10 a\nb\xEF\xBF\xBD");
  std::ofstream(path, std::ios::app) << "and more\n";
  std::filesystem::rename(path, path + ".1");
  writeFile(path, "2024-03-10 another");
  for (const char* time : {"at first", "again"}) {
    EXPECT_EQ(allOf(log.text()), "2024-03-10 a\nb\xEF\xBF\xBD\n") << time;
  }
  std::filesystem::resize_file(path + ".1", 10);
  EXPECT_EQ(allOf(log.text()), "2024-0") << "what is gone is gone";
}

TEST(RecentLog, IsNothingForWhatIsNoFileAndEmptyWhenStopped) {
  const ScratchFolder folder;
  EXPECT_FALSE(readLogsContent(folder.file("missing"), kNow));
  EXPECT_FALSE(readLogsContent(folder.path().string(), kNow));
  writeFile(folder.file("x.log"), "2024-03-10 a");
  std::stop_source stop;
  stop.request_stop();
  EXPECT_EQ(readLogsContent(folder.file("x.log"), kNow, stop.get_token())->size(), 0U);
}

}  // namespace
}  // namespace velmara
