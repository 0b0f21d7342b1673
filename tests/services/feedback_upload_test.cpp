#include "services/feedback_upload.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "platform/dispatch.h"
#include "platform/log.h"
#include "platform/notification_names.h"
#include "services/event_loop.h"
#include "services/local_date.h"
#include "services/recording_server.h"
#include "support/manual_time.h"
#include "support/scratch_folder.h"
#include "support/slowness.h"

namespace velmara {
namespace {

using testing_support::Heartbeat;
using testing_support::ManualTime;
using testing_support::Peer;
using testing_support::RecordingServer;
using testing_support::runUntil;
using testing_support::ScratchFolder;
using End = HttpOutcome::End;

constexpr std::string_view kEnvelopeEnd = "</soap:Envelope>";
constexpr std::string_view kOk = "HTTP/1.1 200 OK\r\nContent-Length: 2\r\n\r\nok";

std::string recordAndAnswer(Peer& peer, std::string_view answer) {
  std::string request = peer.readUntil(kEnvelopeEnd);
  peer.send(answer);
  return request;
}

class FeedbackUploadsTest : public testing::Test {
 protected:
  FeedbackUploadsTest() {
    before_ = setLogSink([this](const std::string& line) { log_.push_back(line); });
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
  ~FeedbackUploadsTest() override { setLogSink(before_); }

  void send(FeedbackUploads& uploads) {
    uploads.extractInfoAndSendFeedback(
        true, "support@x.y", form_,
        [this](const HttpOutcome& outcome) { outcomes_.push_back(outcome); });
  }

  // Sends the form to a server and waits for the end.
  End sendTo(const std::string& endpoint) {
    setup_.sources.addresses.feedbackEndpoint = endpoint;
    FeedbackUploads uploads(setup_);
    send(uploads);
    EXPECT_EQ(uploads.underWay(), 1U);
    EXPECT_TRUE(runUntil([&] { return uploads.underWay() == 0; }));
    EXPECT_EQ(outcomes_.size(), 1U);
    return outcomes_.empty() ? End::kCancelled : outcomes_.front().end;
  }

  const ScratchFolder home_;
  ManualTime time_;
  NotificationCenter center_;
  FeedbackUploadSetup setup_;
  FeedbackForm form_{"a@b.co", "General Feedback", "caf\xC3\xA9 & \xF0\x9F\x98\x80", false, false};
  int thanks_ = 0;
  std::vector<HttpOutcome> outcomes_;
  std::vector<std::string> log_;

 private:
  LogSink before_;
  NotificationCenter::Token token_;
};

TEST_F(FeedbackUploadsTest, TheRequestIsRightToTheLastByte) {
  const RecordingServer server([](Peer& peer) { return recordAndAnswer(peer, kOk); });
  std::srand(1);  // What an unseeded generator starts from.
  const std::string number = std::to_string(std::rand() % 1000);
  std::srand(1);
  EXPECT_EQ(sendTo(server.url("127.0.0.1", "/feedback.asmx")), End::kFinished);
  ASSERT_TRUE(runUntil([&] { return !server.requests().empty(); }));

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
      getDateInFormatNEW(time_.wall()) + ' ' + number +
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
  const RecordingServer server([](Peer& peer) { return recordAndAnswer(peer, kOk); });
  EXPECT_EQ(sendTo(server.url()), End::kFinished);
  EXPECT_EQ(thanks_, 1);
  EXPECT_EQ(log_, (std::vector<std::string>{
                      "connection: didSendBodyData:", "connection: didReceiveResponse:",
                      "connection: didReceiveData:", "connectionDidFinishLoading:"}));
}

TEST_F(FeedbackUploadsTest, ThanksForAFinishedAnswerWhateverItsStatusAndForNothingElse) {
  struct Case {
    std::string_view answer;
    End end;
  };
  for (const auto& [answer, end] : std::initializer_list<Case>{
           {kOk, End::kFinished},
           {"HTTP/1.1 500 No\r\nContent-Length: 0\r\n\r\n", End::kFinished},
           {"HTTP/1.1 404 No\r\n\r\n<html>", End::kFinished},
           {"HTTP/1.1 302 Go\r\nLocation: http://elsewhere.test/\r\n\r\n", End::kFinished},
           {"", End::kFailed},
           {"HTTP/1.1 200 OK\r\nContent-Length: 5\r\n\r\nab", End::kFailed},
           {"220 mail.test ready\r\n", End::kFailed},
       }) {
    thanks_ = 0;
    outcomes_.clear();
    const std::string_view text = answer;
    const RecordingServer server([text](Peer& peer) { return recordAndAnswer(peer, text); });
    EXPECT_EQ(sendTo(server.url()), end) << answer;
    EXPECT_EQ(thanks_, end == End::kFinished ? 1 : 0) << answer;
  }
}

TEST_F(FeedbackUploadsTest, TheDefaultAddressReachesNobody) {
  EXPECT_EQ(sendTo(configuredAddresses().feedbackEndpoint), End::kFailed);
  EXPECT_EQ(thanks_, 0);
  EXPECT_TRUE(log_.empty());
}

TEST_F(FeedbackUploadsTest, SeveralMayBeUnderWayAndEachHasItsEnd) {
  const RecordingServer server([](Peer& peer) { return recordAndAnswer(peer, kOk); });
  setup_.sources.addresses.feedbackEndpoint = server.url();
  FeedbackUploads uploads(setup_);
  int ends = 0;
  for (int count = 0; count < 3; ++count) {
    uploads.extractInfoAndSendFeedback(true, {}, form_, [&](const HttpOutcome&) { ++ends; });
  }
  EXPECT_EQ(uploads.underWay(), 3U);
  ASSERT_TRUE(runUntil([&] { return uploads.underWay() == 0; }));
  EXPECT_EQ(ends, 3);
  EXPECT_EQ(thanks_, 3);
}

TEST_F(FeedbackUploadsTest, EndsAtOnceWhenTheProgramDoes) {
  const RecordingServer silent([](Peer& peer) {
    std::string request = peer.readUntil(kEnvelopeEnd);
    peer.waitForClose();
    return request;
  });
  setup_.sources.addresses.feedbackEndpoint = silent.url();
  auto uploads = std::make_unique<FeedbackUploads>(setup_);
  send(*uploads);
  ASSERT_TRUE(runUntil([&] { return !log_.empty(); }));  // Something was sent.
  QElapsedTimer taken;
  taken.start();
  uploads.reset();
  EXPECT_LT(taken.elapsed(), 200 * testing_support::kSlowness);
  ASSERT_EQ(outcomes_.size(), 1U);
  EXPECT_EQ(outcomes_[0].end, End::kCancelled);
  EXPECT_EQ(thanks_, 0);
}

// The log is read on the other queue: the window goes on, and the end of the program stops it.
TEST_F(FeedbackUploadsTest, AnEnormousLogStallsNeitherTheWindowNorTheEnd) {
  std::string lines;
  while (lines.size() < 1000000) lines += "2001-01-01 00:00:00 x\n";
  {
    std::ofstream log(home_.file("Library/Logs/MyApp.log"), std::ios::binary);
    for (int count = 0; count < 200; ++count) log << lines;
    log << getDateStrInYYYYMMDDFormat(time_.wall()) << " recent";
  }
  form_.sendLogs = true;
  std::optional<FeedbackReport> report;
  {
    const Heartbeat heartbeat;
    FeedbackUploads uploads(setup_);
    uploads.describe(form_, [&](const FeedbackReport& gathered) { report = gathered; });
    ASSERT_TRUE(runUntil([&] { return report.has_value(); }));
    EXPECT_TRUE(report->logPart.ends_with(" recent\n"));
    EXPECT_LT(heartbeat.longestPause(), 200 * testing_support::kSlowness);
  }
  auto uploads = std::make_unique<FeedbackUploads>(setup_);
  send(*uploads);
  QElapsedTimer taken;
  taken.start();
  uploads.reset();
  EXPECT_LT(taken.elapsed(), 200 * testing_support::kSlowness);
  EXPECT_EQ(outcomes_.at(0).end, End::kCancelled);
}

TEST_F(FeedbackUploadsTest, AMegabyteOfHostileTextArrivesWhole) {
  const RecordingServer server([](Peer& peer) { return recordAndAnswer(peer, kOk); });
  form_.experience.clear();
  while (form_.experience.size() < (std::size_t{1} << 20)) {
    form_.experience += "]]>\r\n\x01\x1b<&\xF0\x9F\x98\x80</content>";
  }
  EXPECT_EQ(sendTo(server.url()), End::kFinished);
  ASSERT_TRUE(runUntil([&] { return !server.requests().empty(); }));
  const std::string request = server.requests().front();
  EXPECT_TRUE(request.ends_with(kEnvelopeEnd));
  // The text cannot close its element: its less-than signs are words.
  EXPECT_EQ(request.find("</content>"), std::string::npos);
  EXPECT_EQ(request.find("&lt;/content&gt;"), request.rfind("&lt;/content&gt;"));
}

TEST_F(FeedbackUploadsTest, AnObserverMayEndEverything) {
  const RecordingServer server([](Peer& peer) { return recordAndAnswer(peer, kOk); });
  setup_.sources.addresses.feedbackEndpoint = server.url();
  auto uploads = std::make_unique<FeedbackUploads>(setup_);
  const auto token = center_.addObserver(notifications::kSubmitFeedback,
                                         [&](const Notification&) { uploads.reset(); });
  send(*uploads);
  ASSERT_TRUE(runUntil([&] { return !outcomes_.empty(); }));
  EXPECT_EQ(outcomes_[0].end, End::kFinished);
  EXPECT_EQ(uploads, nullptr);
}

}  // namespace
}  // namespace velmara
