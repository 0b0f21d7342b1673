#include "services/feedback_report.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "services/text.h"
#include "support/log_capture.h"
#include "support/manual_time.h"
#include "support/run_program.h"

namespace velmara {
namespace {

using testing_support::LogCapture;
using testing_support::ManualTime;
using testing_support::runProgram;
using testing_support::ScratchFolder;
using testing_support::writeFile;

TEST(EmailAddress, FollowsThePattern) {
  using namespace std::string_view_literals;
  struct Case {
    std::string_view address;
    bool valid;
  };
  for (const auto& [address, valid] : std::initializer_list<Case>{
           {"a@b.co"sv, true},
           {"first.last+tag@sub.example-site.org"sv, true},
           {"!#$%&'*+/=?^_`{|}~-@x.y"sv, true},
           {"\"quoted @ name\"@x.y"sv, false},  // A blank needs a backslash.
           {"\"quoted\\ name\"@x.y"sv, true},
           {"\"@\"@x.y"sv, true},
           {"a@[1.2.3.4]"sv, true},
           {"a@[255.255.255.256]"sv, false},
           {"a@[1.2.3.tag:any]"sv, true},
           {"a@[1.2.3.tag:]]"sv, true},  // The last range takes the bracket in.
           {"a@[1.2.3.tag:\\ ]"sv, true},
           {"a@[1.2.3.tag: ]"sv, false},
           {"1@2.3"sv, true},
           {"A@b.co"sv, false},  // The form makes it lower-case first.
           {"a@b"sv, false},
           {"a@-b.co"sv, false},
           {"a@b-.co"sv, false},
           {"a@b..co"sv, false},
           {"a@b.co."sv, false},
           {".a@b.co"sv, false},
           {"a..b@b.co"sv, false},
           {"a b@b.co"sv, false},
           {"@b.co"sv, false},
           {"a@b.co\n"sv, false},
           {" a@b.co"sv, false},
           {"a@b.co\0x"sv, false},
           {"\xC3\xA9@b.co"sv, false},
           {"a@b.\xC3\xA9"sv, false},
           {""sv, false},
       }) {
    EXPECT_EQ(validateEmail(address), valid) << address;
  }
}

// Some of them can be read in exponentially many ways, which would never end.
TEST(EmailAddress, HostileTextsOf64KiBComeToAnEnd) {
  const auto repeated = [](const std::string& piece) {
    std::string text;
    while (text.size() < 65536) text += piece;
    return text;
  };
  for (const std::string& text :
       {"a@[1.2.3.x:" + repeated("\\"), "a@[1.2.3.x:" + repeated("\\a\\"), "a@" + repeated("a"),
        "a@" + repeated("a-"), "a@" + repeated("a."), repeated("a."), '"' + repeated("\\\""),
        repeated("@")}) {
    EXPECT_FALSE(validateEmail(text)) << text.substr(0, 20);
  }
  EXPECT_TRUE(validateEmail("a@" + repeated("a.") + "b"));
}

TEST(FeedbackForm, IsTidiedAndItsTypeLogged) {
  const LogCapture log;
  FeedbackForm form{" Ann.Lee@EXAMPLE.org\n", "General Feedback", "\n  Keeps CAPITALS \n"};
  EXPECT_FALSE(checkFeedbackFields(form).any());
  EXPECT_EQ(form.email, "ann.lee@example.org");
  EXPECT_EQ(form.experience, "Keeps CAPITALS");
  EXPECT_EQ(log.lines(), std::vector<std::string>{"Title :General Feedback"});
}

class FeedbackReportTest : public testing::Test {
 protected:
  FeedbackReportTest() {
    std::filesystem::create_directories(home_.file("Library/Logs"));
    std::filesystem::create_directories(home_.file("Documents"));
    sources_.homeDirectory = home_.path().string();
    sources_.bundle.CFBundleName = "My App";
    sources_.bundle.CFBundleExecutable = "MyApp";
    sources_.bundle.CFBundleVersion = "1.2";
    sources_.addresses.buyNowPattern = "https://x/%@/buy";
    sources_.addresses.feedbackNamespace = "urn:f/";
    sources_.serialNumber = [] { return std::optional<std::string>("SER1"); };
  }

  FeedbackReport gather() { return gatherReport(form_, sources_, time_.wall()); }
  std::string today() const { return getDateStrInYYYYMMDDFormat(time_.wall()); }
  void writeLog(const std::string& name, const std::string& text) {
    writeFile(home_.file("Library/Logs/" + name), text);
  }
  static std::string allOf(const TextSource& text) {
    std::string all;
    for (std::string piece = text(); !piece.empty(); piece = text()) all += piece;
    return all;
  }
  // What stands in an element of the report's document.
  std::string valueOf(const std::string& element) {
    const std::string all = allOf(reportDocument(gather()));
    const std::size_t at = all.find('<' + element + '>') + element.size() + 2;
    return all.substr(at, all.find("</" + element, at) - at);
  }

  const ScratchFolder home_;
  ManualTime time_;
  FeedbackSources sources_;
  FeedbackForm form_{"a@b.co", "General Feedback", "fine", true, true};
};

TEST_F(FeedbackReportTest, FilesAreReadOnlyWhenAskedForAndThere) {
  EXPECT_EQ(valueOf("logs_Data"), "LOGSNOTSELECTED");
  EXPECT_EQ(valueOf("logs_Data_Scan"), "SCAN_LOGSNOTSELECTED");
  writeLog("My App.log", today() + " by the bundle's name");
  EXPECT_EQ(valueOf("logs_Data"), "LOGSNOTSELECTED") << "it goes by the executable's name";
  writeLog("MyApp.log", "2001-01-01 old\n");
  writeFile(home_.file("Documents/ScanReport.plist"), "no property list");
  EXPECT_EQ(valueOf("logs_Data"), "");
  EXPECT_EQ(valueOf("logs_Data_Scan"), "SCAN_LOGSNOTSELECTED");
  writeLog("MyApp.log", "old\n" + today() + " recent");
  writeFile(home_.file("Documents/ScanReport.plist"),
            "<plist><dict><key>k</key><true/></dict></plist>");
  EXPECT_EQ(valueOf("logs_Data"), today() + " recent\n");
  EXPECT_NE(valueOf("logs_Data_Scan").find("(lessthan)key>k(lessthan)/key>"), std::string::npos);
  form_.sendLogs = false;
  form_.sendScanLog = false;
  EXPECT_EQ(valueOf("logs_Data"), "LOGSNOTSELECTED");
  EXPECT_EQ(valueOf("logs_Data_Scan"), "SCAN_LOGSNOTSELECTED");
}

TEST_F(FeedbackReportTest, OfTheLogsAloneNeedsNoForm) {
  writeLog("MyApp.log", today() + " recent");
  const FeedbackReport given =
      gatherLogsOnlyReport("given@x.y", "field@x.y", sources_, time_.wall());
  EXPECT_EQ(given.email, "given@x.y");
  EXPECT_EQ(given.feedbackType, "Sending logs");
  EXPECT_EQ(given.content, "Sending logs");
  EXPECT_TRUE(given.log && !given.usage);
  EXPECT_EQ(gatherLogsOnlyReport("", "field@x.y", sources_, time_.wall()).email, "field@x.y");
}

TEST_F(FeedbackReportTest, WhatIsNotThereIsNull) {
  sources_.serialNumber = [] { return std::nullopt; };
  sources_.addresses.buyNowPattern = "https://x/";
  EXPECT_EQ(valueOf("machineid"), "(null)");
  EXPECT_EQ(valueOf("os_version"), "(null)");
  EXPECT_EQ(valueOf("URL_BUYNOW"), "https://x/");
}

// Python's parser takes the report out of the envelope and the texts out of the report.
TEST_F(FeedbackReportTest, AnotherParserFindsTheTextsWhereTheRulesAllowIt) {
  constexpr const char* kScript =
      "import sys, xml.etree.ElementTree as tree\n"
      "try:\n"
      "  text = tree.parse(sys.argv[1]).find('.//{urn:f/}input').text\n"
      "  report = tree.fromstring(text)\n"
      "  document = open(sys.argv[2], newline='').read()\n"
      "  print([part.tag for part in report], document.replace('\\r', '') == text,\n"
      "        ascii(report.find('feedback/content').text),\n"
      "        report.find('logs_info/logs_Data').text[11:] == "
      "report.find('feedback/content').text)\n"
      "except tree.ParseError:\n"
      "  print('invalid')\n";
  const std::string parts =
      "['feedback', 'logs_info', 'sys_info', 'key', 'campaign_info', 'app_info'] True ";
  const std::pair<std::string, std::string> cases[] = {
      {"fish & chips <b> \"it's\"\n", parts + "'fish & chips (lessthan)b> \"it\\'s\"\\n' True\n"},
      {"\xF0\x9F\x98\x80\n", parts + "'\\U0001f600\\n' True\n"},
      {"&lt; &amp; &#65;\n", parts + "'&lt; &amp; &#65;\\n' True\n"},
      {"<![CDATA[x\n", parts + "'(lessthan)![CDATA[x\\n' True\n"},
      // Unescaped once, this ends a section that never began; unescaped twice it would be fine.
      {"x]]>", "invalid\n"},
      {"escape \x1B", "invalid\n"},
  };
  for (const auto& [text, expected] : cases) {
    form_.experience = text;
    writeLog("MyApp.log", today() + ' ' + text.substr(0, text.size() - 1));
    const FeedbackReport report = gather();
    const ReportText envelope = prepareSoapMsg(report, sources_, time_.wall(), 7);
    writeFile(home_.file("envelope"), allOf(envelope.text()));
    writeFile(home_.file("document"), allOf(reportDocument(report)));
    const auto result =
        runProgram({"python3", "-c", kScript, home_.file("envelope"), home_.file("document")});
    EXPECT_EQ(result.output, expected) << result.errors;
  }
}

}  // namespace
}  // namespace velmara
