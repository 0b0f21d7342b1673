#include "services/feedback_upload.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "platform/dispatch.h"
#include "platform/notification_center.h"
#include "services/event_loop.h"
#include "services/text.h"
#include "support/log_capture.h"
#include "support/manual_time.h"
#include "support/recording_server.h"
#include "support/scratch_folder.h"

namespace velmara {
namespace {

using testing_support::answering;
using testing_support::kOk;
using testing_support::LogCapture;
using testing_support::ManualTime;
using testing_support::RecordingServer;
using testing_support::runUntil;
using testing_support::ScratchFolder;
using End = HttpAnswer::End;

constexpr std::string_view kEnvelopeEnd = "</soap:Envelope>";

class FeedbackUploadsTest : public testing::Test {
 protected:
  FeedbackUploadsTest() {
    std::filesystem::create_directories(home_.file("Library/Logs"));
    FeedbackSources& sources = setup_.sources;
    sources.homeDirectory = home_.path().string();
    sources.bundle.CFBundleName = "My App";
    sources.bundle.CFBundleExecutable = "MyApp";
    sources.bundle.CFBundleVersion = "1.2";
    sources.addresses.buyNowPattern = "https://x/%@";
    sources.addresses.feedbackNamespace = "urn:f/";
    sources.serialNumber = [] { return std::optional<std::string>("SER1"); };
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
  ~FeedbackUploadsTest() override { EXPECT_TRUE(runUntil(isGlobalQueueIdle)); }

  void send(FeedbackUploads& uploads) {
    uploads.extractInfoAndSendFeedback(
        true, "support@x.y", form_,
        [this](const HttpAnswer& answer) { outcomes_.push_back(answer.end); });
  }
  // Sends the form to a server and waits for the end.
  End sendTo(const std::string& endpoint) {
    setup_.sources.addresses.feedbackEndpoint = endpoint;
    FeedbackUploads uploads(setup_);
    send(uploads);
    EXPECT_EQ(uploads.underWay(), 1U);
    EXPECT_TRUE(runUntil([&] { return uploads.underWay() == 0; }));
    EXPECT_EQ(outcomes_.size(), 1U);
    return outcomes_.empty() ? End::kCancelled : outcomes_.front();
  }
  std::string today() const { return getDateStrInYYYYMMDDFormat(time_.wall()); }

  const LogCapture log_;
  const ScratchFolder home_;
  ManualTime time_;
  NotificationCenter center_;
  FeedbackUploadSetup setup_;
  FeedbackForm form_{"a@b.co", "General Feedback", "caf\xC3\xA9 & \xF0\x9F\x98\x80", false, false};
  int thanks_ = 0;
  std::vector<End> outcomes_;

 private:
  NotificationCenter::Token token_;
};

// Nobody seeds the generator, so the first number is the same in every run; this test has a process
// to itself.
TEST_F(FeedbackUploadsTest, TheRequestIsRightToTheLastByte) {
  const RecordingServer server(answering(kEnvelopeEnd, kOk));
  EXPECT_EQ(sendTo(server.url("127.0.0.1", "/feedback.asmx")), End::kFinished);
  ASSERT_TRUE(server.waitForRequests(1));

  const std::string body =
      "<soap:Envelope xmlns:soap=\"http://schemas.xmlsoap.org/soap/envelope/\" "
      "xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" "
      "xmlns:xsd=\"http://www.w3.org/2001/XMLSchema\" "
      "xmlns:soapenc=\"http://schemas.xmlsoap.org/soap/encoding/\"><soap:Body>"
      "<UploadFeedback xmlns=\"urn:f/\"><input>"
      "&lt;sf_feedback&gt;&lt;feedback&gt;&lt;appname&gt;My App&lt;/appname&gt;"
      "&lt;email&gt;a@b.co&lt;/email&gt;&lt;feedback_type&gt;General Feedback"
      "&lt;/feedback_type&gt;&lt;content&gt;caf\xC3\xA9 &amp;amp; \xF0\x9F\x98\x80&lt;/content&gt;"
      "&lt;/feedback&gt;&lt;logs_info&gt;&lt;logs_Data&gt;LOGSNOTSELECTED&lt;/logs_Data&gt;"
      "&lt;logs_Data_Scan&gt;SCAN_LOGSNOTSELECTED&lt;/logs_Data_Scan&gt;&lt;/logs_info&gt;"
      "&lt;sys_info&gt;&lt;os_version&gt;(null)&lt;/os_version&gt;&lt;proc_name&gt;(null)"
      "&lt;/proc_name&gt;&lt;ram_info&gt;(null)&lt;/ram_info&gt;&lt;/sys_info&gt;&lt;key&gt;"
      "&lt;keyvalue&gt;&lt;/keyvalue&gt;&lt;machineid&gt;SER1&lt;/machineid&gt;"
      "&lt;registered_email_id&gt;&lt;/registered_email_id&gt;&lt;/key&gt;&lt;campaign_info&gt;"
      "&lt;affiliateid&gt;&lt;/affiliateid&gt;&lt;utm_campaign&gt;&lt;/utm_campaign&gt;"
      "&lt;utm_content&gt;&lt;/utm_content&gt;&lt;utm_medium&gt;&lt;/utm_medium&gt;"
      "&lt;utm_source&gt;&lt;/utm_source&gt;&lt;utm_term&gt;&lt;/utm_term&gt;"
      "&lt;x-at&gt;&lt;/x-at&gt;&lt;URL_BUYNOW&gt;https://x/MyApp&lt;/URL_BUYNOW&gt;"
      "&lt;/campaign_info&gt;&lt;app_info&gt;&lt;app_ver&gt;1.2&lt;/app_ver&gt;&lt;/app_info&gt;"
      "&lt;/sf_feedback&gt;</input><filename>MyApp-Feedback " +
      getDateInFormatNEW(time_.wall()) +
      " 383"
      ".xml</filename></UploadFeedback></soap:Body></soap:Envelope>";
  // Counted in UTF-16 units: one less for the accent, two for the smiling face.
  const std::string head =
      "POST /feedback.asmx HTTP/1.1\r\nHost: 127.0.0.1:" + std::to_string(server.port()) +
      "\r\nContent-Type: text/xml; charset=utf-8\r\n"
      "SOAPAction: urn:f/UploadFeedback\r\nContent-Length: " +
      std::to_string(body.size() - 3) + "\r\nConnection: close\r\n\r\n";
  EXPECT_EQ(server.requests().front(), head + body);
}

TEST_F(FeedbackUploadsTest, LogsItsStepsAndThanksOnce) {
  const RecordingServer server(answering(kEnvelopeEnd, kOk));
  EXPECT_EQ(sendTo(server.url()), End::kFinished);
  EXPECT_EQ(thanks_, 1);
  EXPECT_EQ(log_.lines(), (std::vector<std::string>{
                              "connection: didSendBodyData:", "connection: didReceiveResponse:",
                              "connection: didReceiveData:", "connectionDidFinishLoading:"}));
}

TEST_F(FeedbackUploadsTest, ThanksForAFinishedAnswerWhateverItsStatusAndForNothingElse) {
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
}

TEST_F(FeedbackUploadsTest, TheDefaultAddressReachesNobody) {
  EXPECT_TRUE(reachesNobody(configuredAddresses().feedbackEndpoint));
  EXPECT_EQ(sendTo(configuredAddresses().feedbackEndpoint), End::kFailed);
  EXPECT_EQ(thanks_, 0);
  EXPECT_TRUE(log_.lines().empty());
}

// The whole way, from looking for the log to the answer, needs the main thread for nothing: here it
// stands still until the service has all of it.
TEST_F(FeedbackUploadsTest, ALogOf64MegabytesIsNoneOfTheMainThreadsBusiness) {
  std::string lines;
  while (lines.size() < (std::size_t{1} << 20)) lines += today() + " a line & more\n";
  std::ofstream log(home_.file("Library/Logs/MyApp.log"), std::ios::binary);
  log << "2001-01-01 old\n";
  for (int count = 0; count < 64; ++count) log << lines;
  log.close();
  form_.sendLogs = true;
  const RecordingServer server(answering(kEnvelopeEnd, kOk));
  setup_.sources.addresses.feedbackEndpoint = server.url();
  FeedbackUploads uploads(setup_);
  send(uploads);
  ASSERT_TRUE(server.waitForRequests(1));
  const std::string request = server.requests()[0];
  const std::size_t body = request.find("\r\n\r\n") + 4;
  // Three bytes more than units: one for the accent, two for the smiling face.
  EXPECT_NE(request.find("Content-Length: " + std::to_string(request.size() - body - 3) + "\r\n"),
            std::string::npos);
  EXPECT_TRUE(request.ends_with(kEnvelopeEnd));
  EXPECT_GT(request.size(), std::size_t{64} << 20);
  EXPECT_EQ(request.find("2001-01-01"), std::string::npos);
  ASSERT_TRUE(runUntil([&] { return uploads.underWay() == 0; }));
  EXPECT_EQ(thanks_, 1);
}

TEST_F(FeedbackUploadsTest, SeveralMayBeUnderWayAndEndWithTheProgram) {
  std::atomic<int> read = 0;
  const RecordingServer silent(testing_support::silent(kEnvelopeEnd, read));
  setup_.sources.addresses.feedbackEndpoint = silent.url();
  auto uploads = std::make_unique<FeedbackUploads>(setup_);
  for (int count = 0; count < 3; ++count) send(*uploads);
  EXPECT_EQ(uploads->underWay(), 3U);
  ASSERT_TRUE(runUntil([&] { return read == 3; }));
  uploads.reset();
  EXPECT_EQ(outcomes_, std::vector(3, End::kCancelled)) << "told at once";
  EXPECT_TRUE(runUntil(isGlobalQueueIdle)) << "the threads are free again";
  EXPECT_EQ(thanks_, 0);
}

TEST_F(FeedbackUploadsTest, AnObserverMayEndEverything) {
  const RecordingServer server(answering(kEnvelopeEnd, kOk));
  setup_.sources.addresses.feedbackEndpoint = server.url();
  auto uploads = std::make_unique<FeedbackUploads>(setup_);
  const auto token = center_.addObserver(notifications::kSubmitFeedback,
                                         [&](const Notification&) { uploads.reset(); });
  send(*uploads);
  ASSERT_TRUE(runUntil([&] { return !outcomes_.empty(); }));
  EXPECT_EQ(outcomes_, std::vector{End::kFinished});
  EXPECT_EQ(uploads, nullptr);
}

TEST_F(FeedbackUploadsTest, AReportIsSavedWholeOrNotAtAll) {
  FeedbackUploads uploads(setup_);
  const std::string name = uploads.proposedFileName();
  EXPECT_TRUE(name.starts_with("MyApp-Feedback " + getDateInFormatNEW(time_.wall()) + ' '));
  EXPECT_TRUE(name.ends_with(".xml"));
  testing_support::writeFile(home_.file("Library/Logs/MyApp.log"), today() + " it's <here>");
  form_.sendLogs = true;
  std::vector<std::string> faults;
  const auto told = [&](const std::string& fault) { faults.push_back(fault); };
  uploads.saveReport(form_, home_.file("report.xml"), told);
  ASSERT_TRUE(runUntil([&] { return faults.size() == 1; }));
  EXPECT_EQ(faults[0], "");
  const std::string report = testing_support::contentsOf(home_.file("report.xml"));
  EXPECT_TRUE(report.starts_with("<sf_feedback><feedback><appname>My App</appname>")) << report;
  EXPECT_NE(report.find(today() + " it's (lessthan)here>\n</logs_Data>"), std::string::npos);
  EXPECT_TRUE(report.ends_with("</sf_feedback>"));
  uploads.saveReport(form_, home_.file("no/such/folder.xml"), told);
  ASSERT_TRUE(runUntil([&] { return faults.size() == 2; }));
  EXPECT_NE(faults[1], "");
}

}  // namespace
}  // namespace velmara
