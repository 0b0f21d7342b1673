#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "platform/dispatch.h"
#include "platform/notification_center.h"
#include "services/feedback_upload.h"
#include "services/text.h"
#include "support/event_loop.h"
#include "support/manual_time.h"
#include "support/recorded_log.h"
#include "support/recording_server.h"
#include "support/run_program.h"

namespace velmara {
namespace {

using namespace testing_support;
using End = HttpAnswer::End;
using Lines = std::vector<std::string>;

constexpr std::string_view kEnvelopeEnd = "</soap:Envelope>";

TEST(EmailAddress, FollowsThePattern) {
  using namespace std::string_view_literals;
  for (const std::string_view valid :
       {"a@b.co"sv, "first.last+tag@sub.example-site.org"sv, "!#$%&'*+/=?^_`{|}~-@x.y"sv,
        "\"quoted\\ name\"@x.y"sv, "\"@\"@x.y"sv, "a@[1.2.3.4]"sv, "a@[1.2.3.tag:any]"sv,
        "a@[1.2.3.tag:]]"sv,  // The last range takes the bracket in.
        "a@[1.2.3.tag:\\ ]"sv, "1@2.3"sv}) {
    EXPECT_TRUE(validateEmail(valid)) << valid;
  }
  for (const std::string_view invalid :
       {"\"quoted @ name\"@x.y"sv,  // A blank needs a backslash.
        "A@b.co"sv,                 // The form makes it lower-case first.
        "a@[255.255.255.256]"sv, "a@[1.2.3.tag: ]"sv, "a@b"sv, "a@-b.co"sv, "a@b-.co"sv,
        "a@b..co"sv, "a@b.co."sv, ".a@b.co"sv, "a..b@b.co"sv, "a b@b.co"sv, "@b.co"sv, "a@b.co\n"sv,
        " a@b.co"sv, "a@b.co\0x"sv, "\xC3\xA9@b.co"sv, "a@b.\xC3\xA9"sv, ""sv}) {
    EXPECT_FALSE(validateEmail(invalid)) << invalid;
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

class FeedbackTest : public testing::Test {
 protected:
  FeedbackTest() {
    std::filesystem::create_directories(home_.file("Library/Logs"));
    std::filesystem::create_directories(home_.file("Documents"));
    sources_.homeDirectory = home_.path().string();
    sources_.bundle.CFBundleName = "My App";
    sources_.bundle.CFBundleExecutable = "MyApp";
    sources_.bundle.CFBundleVersion = "1.2";
    sources_.addresses.buyNowPattern = "https://x/%@";
    sources_.addresses.feedbackNamespace = "urn:f/";
    sources_.serialNumber = [] { return std::optional<std::string>("SER1"); };
    setup_.clock = &time_;
    setup_.mainQueue = &mainQueue();
    setup_.globalQueue = &globalQueue();
    setup_.center = &center_;
    token_ = center_.addObserver(notifications::kSubmitFeedback, [this](const Notification& note) {
      ++thanks_;
      EXPECT_FALSE(note.object.has_value());
      EXPECT_TRUE(outcomes_.empty()) << "the outcome comes after the notification";
    });
  }
  ~FeedbackTest() override { EXPECT_TRUE(runUntil(isGlobalQueueIdle)); }

  FeedbackReport gather() { return gatherReport(form_, sources_, time_.wall()); }
  std::string today() const { return getDateStrInYYYYMMDDFormat(time_.wall()); }
  std::string logFile() const { return home_.file("Library/Logs/MyApp.log"); }
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
  void send(FeedbackUploads& uploads) {
    uploads.extractInfoAndSendFeedback(
        true, "support@x.y", form_,
        [this](const HttpAnswer& answer) { outcomes_.push_back(answer.end); });
  }
  // Sends the form to a server and waits for the end.
  End sendTo(const std::string& endpoint) {
    sources_.addresses.feedbackEndpoint = endpoint;
    FeedbackUploads uploads(setup_);
    send(uploads);
    EXPECT_EQ(uploads.underWay(), 1U);
    EXPECT_TRUE(runUntil([&] { return uploads.underWay() == 0; }));
    EXPECT_EQ(outcomes_.size(), 1U);
    return outcomes_.empty() ? End::kCancelled : outcomes_.front();
  }

  const RecordedLog log_;
  const ScratchFolder home_;
  ManualTime time_;
  NotificationCenter center_;
  FeedbackUploadSetup setup_;
  FeedbackSources& sources_ = setup_.sources;
  FeedbackForm form_{"a@b.co", "General Feedback", "caf\xC3\xA9 & \xF0\x9F\x98\x80", false, false};
  int thanks_ = 0;
  std::vector<End> outcomes_;
  NotificationCenter::Token token_;
};

TEST_F(FeedbackTest, TheFormIsTidiedAndItsTypeLogged) {
  FeedbackForm form{" Ann.Lee@EXAMPLE.org\n", "General Feedback", "\n  Keeps CAPITALS \n"};
  EXPECT_FALSE(checkFeedbackFields(form).any());
  EXPECT_EQ(form.email, "ann.lee@example.org");
  EXPECT_EQ(form.experience, "Keeps CAPITALS");
  EXPECT_EQ(log_.lines(), Lines{"Title :General Feedback"});
}

TEST_F(FeedbackTest, FilesAreReadOnlyWhenAskedForAndThere) {
  form_.sendLogs = form_.sendScanLog = true;
  const struct {
    const char *log, *usage, *sentLog, *sentUsage;
  } rows[] = {
      {nullptr, nullptr, "LOGSNOTSELECTED", "SCAN_LOGSNOTSELECTED"},
      {"2001-01-01 old\n", "no property list", "", "SCAN_LOGSNOTSELECTED"},
      {"old\nTODAY recent", "<plist><dict><key>k</key><true/></dict></plist>", "TODAY recent\n",
       "(lessthan)key>k(lessthan)/key>"},
  };
  const auto dated = [&](std::string text) {
    const std::size_t at = text.find("TODAY");
    return at == std::string::npos ? text : text.replace(at, 5, today());
  };
  writeFile(home_.file("Library/Logs/My App.log"), today() + " by the bundle's name");
  for (const auto& row : rows) {
    if (row.log != nullptr) writeFile(logFile(), dated(row.log));
    if (row.usage != nullptr) writeFile(home_.file("Documents/ScanReport.plist"), row.usage);
    EXPECT_EQ(valueOf("logs_Data"), dated(row.sentLog));
    EXPECT_NE(valueOf("logs_Data_Scan").find(row.sentUsage), std::string::npos);
  }
  const FeedbackReport given =
      gatherLogsOnlyReport("given@x.y", "field@x.y", sources_, time_.wall());
  EXPECT_EQ(given.email + given.feedbackType + given.content, "given@x.ySending logsSending logs");
  EXPECT_TRUE(given.log && !given.usage);
  EXPECT_EQ(gatherLogsOnlyReport("", "field@x.y", sources_, time_.wall()).email, "field@x.y");
  form_.sendLogs = form_.sendScanLog = false;
  EXPECT_EQ(valueOf("logs_Data"), "LOGSNOTSELECTED");
  EXPECT_EQ(valueOf("logs_Data_Scan"), "SCAN_LOGSNOTSELECTED");
  sources_.serialNumber = [] { return std::nullopt; };
  sources_.addresses.buyNowPattern = "https://x/";
  EXPECT_EQ(valueOf("machineid"), "(null)");
  EXPECT_EQ(valueOf("URL_BUYNOW"), "https://x/");
}

// Python's parser takes the report out of the envelope and the texts out of the report.
TEST_F(FeedbackTest, AnotherParserFindsTheTextsWhereTheRulesAllowIt) {
  constexpr const char* kScript =
      "import sys, xml.etree.ElementTree as tree\n"
      "try:\n"
      "  text = tree.parse(sys.argv[1]).find('.//{urn:f/}input').text\n"
      "  report = tree.fromstring(text)\n"
      "  document = open(sys.argv[2], newline='').read()\n"
      "  content = report.find('feedback/content').text\n"
      "  print([part.tag for part in report], document.replace('\\r', '') == text,\n"
      "        ascii(content), report.find('logs_info/logs_Data').text[11:] == content)\n"
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
  form_.sendLogs = true;
  for (const auto& [text, expected] : cases) {
    form_.experience = text;
    writeFile(logFile(), today() + ' ' + text.substr(0, text.size() - 1));
    const FeedbackReport report = gather();
    const ReportText envelope = prepareSoapMsg(report, sources_, time_.wall(), 7);
    writeFile(home_.file("envelope"), allOf(envelope.text()));
    writeFile(home_.file("document"), allOf(reportDocument(report)));
    const auto result =
        runProgram({"python3", "-c", kScript, home_.file("envelope"), home_.file("document")});
    EXPECT_EQ(result.output, expected) << result.errors;
  }
}

// Nobody seeds the generator, so the first number is the same in every run; this test has a process
// to itself.
TEST_F(FeedbackTest, TheRequestIsRightToTheLastByte) {
  const RecordingServer server(answering(kEnvelopeEnd, kOk));
  EXPECT_EQ(sendTo(server.url("127.0.0.1", "/feedback.asmx")), End::kFinished);
  EXPECT_EQ(thanks_, 1);
  EXPECT_EQ(log_.lines(), (Lines{"connection: didSendBodyData:", "connection: didReceiveResponse:",
                                 "connection: didReceiveData:", "connectionDidFinishLoading:"}));
  ASSERT_TRUE(server.waitForRequests(1));

  std::string report;
  for (const char c : std::string_view(
           "<sf_feedback><feedback><appname>My App</appname><email>a@b.co</email>"
           "<feedback_type>General Feedback</feedback_type>"
           "<content>caf\xC3\xA9 &amp; \xF0\x9F\x98\x80</content></feedback>"
           "<logs_info><logs_Data>LOGSNOTSELECTED</logs_Data>"
           "<logs_Data_Scan>SCAN_LOGSNOTSELECTED</logs_Data_Scan></logs_info>"
           "<sys_info><os_version>(null)</os_version><proc_name>(null)</proc_name>"
           "<ram_info>(null)</ram_info></sys_info><key><keyvalue></keyvalue>"
           "<machineid>SER1</machineid><registered_email_id></registered_email_id></key>"
           "<campaign_info><affiliateid></affiliateid><utm_campaign></utm_campaign>"
           "<utm_content></utm_content><utm_medium></utm_medium><utm_source></utm_source>"
           "<utm_term></utm_term><x-at></x-at><URL_BUYNOW>https://x/MyApp</URL_BUYNOW>"
           "</campaign_info><app_info><app_ver>1.2</app_ver></app_info></sf_feedback>")) {
    report += c == '<' ? "&lt;" : c == '>' ? "&gt;" : c == '&' ? "&amp;" : std::string(1, c);
  }
  const std::string body =
      "<soap:Envelope xmlns:soap=\"http://schemas.xmlsoap.org/soap/envelope/\" "
      "xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" "
      "xmlns:xsd=\"http://www.w3.org/2001/XMLSchema\" "
      "xmlns:soapenc=\"http://schemas.xmlsoap.org/soap/encoding/\"><soap:Body>"
      "<UploadFeedback xmlns=\"urn:f/\"><input>" +
      report + "</input><filename>MyApp-Feedback " + getDateInFormatNEW(time_.wall()) +
      " 383.xml</filename></UploadFeedback></soap:Body></soap:Envelope>";
  // Counted in UTF-16 units: one less for the accent, two for the smiling face.
  EXPECT_EQ(server.requests().front(),
            "POST /feedback.asmx HTTP/1.1\r\nHost: 127.0.0.1:" + std::to_string(server.port()) +
                "\r\nContent-Type: text/xml; charset=utf-8\r\n"
                "SOAPAction: urn:f/UploadFeedback\r\nContent-Length: " +
                std::to_string(body.size() - 3) + "\r\nConnection: close\r\n\r\n" + body);
}

TEST_F(FeedbackTest, ThanksForAFinishedAnswerWhateverItsStatusAndForNothingElse) {
  for (const auto& [answer, end] : std::initializer_list<std::pair<const char*, End>>{
           {"HTTP/1.1 500 No\r\nContent-Length: 0\r\n\r\n", End::kFinished},
           {"HTTP/1.1 302 Go\r\nLocation: http://elsewhere.test/\r\n\r\n", End::kFinished},
           {"HTTP/1.1 200 OK\r\nContent-Length: 5\r\n\r\nab", End::kFailed},
       }) {
    thanks_ = 0;
    outcomes_.clear();
    const RecordingServer server(answering(kEnvelopeEnd, answer));
    EXPECT_EQ(sendTo(server.url()), end) << answer;
    EXPECT_EQ(thanks_, end == End::kFinished ? 1 : 0) << answer;
  }
  outcomes_.clear();
  EXPECT_TRUE(reachesNobody(configuredAddresses().feedbackEndpoint));
  EXPECT_EQ(sendTo(configuredAddresses().feedbackEndpoint), End::kFailed);
  EXPECT_EQ(thanks_, 0);
}

// The whole way, from looking for the log to the answer, needs the main thread for nothing: here it
// stands still until the service has all of it.
TEST_F(FeedbackTest, ALogOf64MegabytesIsNoneOfTheMainThreadsBusiness) {
  std::string lines;
  while (lines.size() < (std::size_t{1} << 20)) lines += today() + " a line & more\n";
  std::ofstream log(logFile(), std::ios::binary);
  log << "2001-01-01 old\n";
  for (int count = 0; count < 64; ++count) log << lines;
  log.close();
  form_.sendLogs = true;
  const RecordingServer server(answering(kEnvelopeEnd, kOk));
  sources_.addresses.feedbackEndpoint = server.url();
  FeedbackUploads uploads(setup_);
  send(uploads);
  ASSERT_TRUE(server.waitForRequests(1));
  const std::string request = server.requests()[0];
  const std::size_t body = request.find("\r\n\r\n") + 4;
  EXPECT_NE(request.find("Content-Length: " + std::to_string(request.size() - body - 3) + "\r\n"),
            std::string::npos);
  EXPECT_TRUE(request.ends_with(kEnvelopeEnd));
  EXPECT_GT(request.size(), std::size_t{64} << 20);
  EXPECT_EQ(request.find("2001-01-01"), std::string::npos);
  ASSERT_TRUE(runUntil([&] { return uploads.underWay() == 0; }));
  EXPECT_EQ(thanks_, 1);
}

TEST_F(FeedbackTest, SeveralMayBeUnderWayAndEndWithTheProgram) {
  std::atomic<int> read = 0;
  const RecordingServer still(silent(kEnvelopeEnd, read));
  sources_.addresses.feedbackEndpoint = still.url();
  auto uploads = std::make_unique<FeedbackUploads>(setup_);
  for (int count = 0; count < 3; ++count) send(*uploads);
  EXPECT_EQ(uploads->underWay(), 3U);
  ASSERT_TRUE(runUntil([&] { return read == 3; }));
  uploads.reset();
  EXPECT_EQ(outcomes_, std::vector(3, End::kCancelled)) << "told at once";
  EXPECT_TRUE(runUntil(isGlobalQueueIdle)) << "the threads are free again";
  EXPECT_EQ(thanks_, 0);
}

TEST_F(FeedbackTest, AnObserverMayEndEverything) {
  const RecordingServer server(answering(kEnvelopeEnd, kOk));
  sources_.addresses.feedbackEndpoint = server.url();
  auto uploads = std::make_unique<FeedbackUploads>(setup_);
  const auto token = center_.addObserver(notifications::kSubmitFeedback,
                                         [&](const Notification&) { uploads.reset(); });
  send(*uploads);
  ASSERT_TRUE(runUntil([&] { return !outcomes_.empty(); }));
  EXPECT_EQ(outcomes_, std::vector{End::kFinished});
  EXPECT_EQ(uploads, nullptr);
}

TEST_F(FeedbackTest, AReportIsSavedWholeOrNotAtAll) {
  FeedbackUploads uploads(setup_);
  const std::string name = uploads.proposedFileName();
  EXPECT_TRUE(name.starts_with("MyApp-Feedback " + getDateInFormatNEW(time_.wall()) + ' '));
  EXPECT_TRUE(name.ends_with(".xml"));
  writeFile(logFile(), today() + " it's <here>");
  form_.sendLogs = true;
  Lines faults;
  const auto told = [&](const std::string& fault) { faults.push_back(fault); };
  uploads.saveReport(form_, home_.file("report.xml"), told);
  ASSERT_TRUE(runUntil([&] { return faults.size() == 1; }));
  uploads.saveReport(form_, home_.file("no/such/folder.xml"), told);
  ASSERT_TRUE(runUntil([&] { return faults.size() == 2; }));
  EXPECT_EQ(faults[0], "");
  EXPECT_NE(faults[1], "");
  EXPECT_EQ(contentsOf(home_.file("report.xml")), allOf(reportDocument(gather())));
  EXPECT_EQ(valueOf("logs_Data"), today() + " it's (lessthan)here>\n");
}

}  // namespace
}  // namespace velmara
