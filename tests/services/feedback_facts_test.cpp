#include "services/feedback_facts.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "services/local_date.h"
#include "support/manual_time.h"
#include "support/run_program.h"

namespace velmara {
namespace {

using testing_support::ManualTime;
using testing_support::runProgram;
using testing_support::ScratchFolder;
using testing_support::writeFile;

class FeedbackFacts : public testing::Test {
 protected:
  FeedbackFacts() {
    std::filesystem::create_directories(home_.file("Library/Logs"));
    std::filesystem::create_directories(home_.file("Documents"));
    sources_.homeDirectory = home_.path().string();
    sources_.bundle.CFBundleName = "My App";
    sources_.bundle.CFBundleExecutable = "MyApp";
    sources_.bundle.CFBundleVersion = "1.2";
    sources_.addresses.buyNowPattern = "https://x/%@";
    sources_.addresses.feedbackNamespace = "urn:f/";
    sources_.serialNumber = [] { return std::optional<std::string>("SER1"); };
    form_ = {"a@b.co", "General Feedback", "fine", true, true};
  }

  std::string today() const { return getDateStrInYYYYMMDDFormat(time_.wall()); }

  const ScratchFolder home_;
  ManualTime time_;
  FeedbackSources sources_;
  FeedbackForm form_;
};

TEST_F(FeedbackFacts, ComeFromTheFormTheBundleAndTheMachine) {
  const FeedbackReport report = gatherReport(form_, sources_, time_.wall());
  EXPECT_EQ(report.appName, "My App");
  EXPECT_EQ(report.email, "a@b.co");
  EXPECT_EQ(report.feedbackType, "General Feedback");
  EXPECT_EQ(report.content, "fine");
  EXPECT_EQ(report.machineId, "SER1");
  EXPECT_EQ(report.buyNowAddress, "https://x/MyApp");
  EXPECT_EQ(report.appVersion, "1.2");
}

TEST_F(FeedbackFacts, MissingFilesLeaveTheirMarkers) {
  const FeedbackReport report = gatherReport(form_, sources_, time_.wall());
  EXPECT_EQ(report.logPart, "LOGSNOTSELECTED");
  EXPECT_EQ(report.usagePart, "SCAN_LOGSNOTSELECTED");
}

TEST_F(FeedbackFacts, FilesAreReadOnlyWhenAskedFor) {
  writeFile(home_.file("Library/Logs/MyApp.log"), "old\n" + today() + " recent");
  writeFile(home_.file("Documents/ScanReport.plist"),
            "<plist><dict><key>k</key><true/></dict></plist>");
  const FeedbackReport with = gatherReport(form_, sources_, time_.wall());
  EXPECT_EQ(with.logPart, today() + " recent\n");
  EXPECT_NE(with.usagePart.find("<key>k</key>"), std::string::npos);
  form_.sendLogs = false;
  form_.sendScanLog = false;
  const FeedbackReport without = gatherReport(form_, sources_, time_.wall());
  EXPECT_EQ(without.logPart, "LOGSNOTSELECTED");
  EXPECT_EQ(without.usagePart, "SCAN_LOGSNOTSELECTED");
}

TEST_F(FeedbackFacts, TheLogGoesByTheExecutablesName) {
  writeFile(home_.file("Library/Logs/My App.log"), today() + " recent");
  EXPECT_EQ(gatherReport(form_, sources_, time_.wall()).logPart, "LOGSNOTSELECTED");
}

TEST_F(FeedbackFacts, AnOldLogIsAnEmptyPartAndAFalseUsageReportNone) {
  writeFile(home_.file("Library/Logs/MyApp.log"), "2001-01-01 old\n");
  writeFile(home_.file("Documents/ScanReport.plist"), "no property list");
  const FeedbackReport report = gatherReport(form_, sources_, time_.wall());
  EXPECT_EQ(report.logPart, "");
  EXPECT_EQ(report.usagePart, "SCAN_LOGSNOTSELECTED");
}

TEST_F(FeedbackFacts, OfTheLogsAloneNeedNoForm) {
  writeFile(home_.file("Library/Logs/MyApp.log"), today() + " recent");
  const FeedbackReport given =
      gatherLogsOnlyReport("given@x.y", "field@x.y", sources_, time_.wall());
  EXPECT_EQ(given.email, "given@x.y");
  EXPECT_EQ(given.feedbackType, "Sending logs");
  EXPECT_EQ(given.content, "Sending logs");
  EXPECT_EQ(given.logPart, today() + " recent\n");
  EXPECT_EQ(given.usagePart, "SCAN_LOGSNOTSELECTED");
  EXPECT_EQ(gatherLogsOnlyReport("", "field@x.y", sources_, time_.wall()).email, "field@x.y");
}

TEST_F(FeedbackFacts, WithoutASerialNumberTheFormatterSaysSo) {
  sources_.serialNumber = [] { return std::nullopt; };
  const std::string envelope =
      prepareSoapMsg(gatherReport(form_, sources_, time_.wall()), sources_, time_.wall());
  EXPECT_NE(envelope.find("&lt;machineid&gt;(null)&lt;/machineid&gt;"), std::string::npos);
}

// Python's parser takes the report out of the envelope and the content out of the report.
TEST_F(FeedbackFacts, AnotherParserFindsTheContentWhereTheRulesAllowIt) {
  constexpr const char* kScript =
      "import sys, xml.etree.ElementTree as tree\n"
      "try:\n"
      "  report = tree.fromstring(tree.parse(sys.argv[1]).find('.//{urn:f/}input').text)\n"
      "  print([part.tag for part in report], ascii(report.find('feedback/content').text))\n"
      "except tree.ParseError:\n"
      "  print('invalid')\n";
  const std::string parts =
      "['feedback', 'logs_info', 'sys_info', 'key', 'campaign_info', 'app_info'] ";
  const std::pair<std::string, std::string> cases[] = {
      {"fish & chips <b> \"", parts + "'fish & chips (lessthan)b> \"'\n"},
      {"\xF0\x9F\x98\x80\r\n", parts + "'\\U0001f600\\n'\n"},
      {"<![CDATA[x", parts + "'(lessthan)![CDATA[x'\n"},
      // Unescaped once, this ends a section that never began; unescaped twice it would be fine.
      {"x]]>", "invalid\n"},
      {"escape \x1B", "invalid\n"},
  };
  for (const auto& [experience, expected] : cases) {
    form_.experience = experience;
    const std::string path = home_.file("envelope.xml");
    writeFile(path,
              prepareSoapMsg(gatherReport(form_, sources_, time_.wall()), sources_, time_.wall()));
    const auto result = runProgram({"python3", "-c", kScript, path});
    EXPECT_EQ(result.output, expected) << result.errors;
  }
}

// Nobody seeds the generator, so the first number is the same in every run; this test has a process
// to itself.
TEST_F(FeedbackFacts, TheFirstFileNameOfEveryRunEndsInTheSameNumber) {
  std::srand(1);  // What an unseeded generator starts from.
  const std::string number = std::to_string(std::rand() % 1000);
  std::srand(1);
  const std::string envelope =
      prepareSoapMsg(gatherReport(form_, sources_, time_.wall()), sources_, time_.wall());
  EXPECT_NE(envelope.find(' ' + number + ".xml</filename>"), std::string::npos);
}

}  // namespace
}  // namespace velmara
