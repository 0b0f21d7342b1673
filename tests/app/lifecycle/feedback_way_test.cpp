// The whole way of feedback: the menu, the form, the report, the service, the thanks.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QComboBox>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QPushButton>

#include <filesystem>
#include <fstream>

#include "app/lifecycle/launch_fixture.h"
#include "app/sheets/feedback_window_controller.h"
#include "services/event_loop.h"
#include "services/local_date.h"
#include "support/slowness.h"

namespace velmara {
namespace {

using testing::HasSubstr;
using testing::Not;
using testing_support::Heartbeat;
using testing_support::kEnvelopeEnd;
using testing_support::LaunchTest;
using testing_support::Peer;
using testing_support::RecordingServer;

constexpr std::string_view kOk = "HTTP/1.1 200 OK\r\nContent-Length: 2\r\n\r\nok";
constexpr const char* kThanks = "Thank you for providing us the feedback.";

class FeedbackWayTest : public LaunchTest {
 protected:
  void launchWith(const RecordingServer& server) {
    environment.addresses.feedbackEndpoint = server.url("127.0.0.1", "/feedback");
    environment.asksForNoTracking = true;  // Which is no word against feedback.
    launch();
    delegate().isInternetAvailable = true;
  }
  // Chooses Help > Feedback.
  FeedbackWindowController& openForm() {
    for (QAction* menu : delegate().windowMain()->findChild<QMenuBar*>()->actions()) {
      if (menu->text() != QLatin1String("&Help")) continue;
      for (QAction* item : menu->menu()->actions()) {
        if (item->text().startsWith(QLatin1String("&Feedback"))) item->trigger();
      }
    }
    auto* form = delegate().windowMain()->findChild<FeedbackWindowController*>();
    EXPECT_NE(form, nullptr);
    EXPECT_TRUE(QTest::qWaitForWindowActive(form));
    return *form;
  }
  template <typename Widget>
  static Widget& part(FeedbackWindowController& form, const char* name) {
    return *form.findChild<Widget*>(QLatin1String(name));
  }
  void fillAndSubmit(FeedbackWindowController& form, const char* experience) {
    part<QLineEdit>(form, "txtFBEmailID").setText("A@b.co");
    part<QComboBox>(form, "btnFBType").setCurrentIndex(3);
    part<QPlainTextEdit>(form, "txtViewFBExp").setPlainText(experience);
    QTest::mouseClick(&part<QPushButton>(form, "btnFBSubmit"), Qt::LeftButton);
    EXPECT_FALSE(form.isVisible());
  }
  std::size_t thanks() const {
    return static_cast<std::size_t>(
        std::count_if(alerts.shown.begin(), alerts.shown.end(),
                      [](const Alert& alert) { return alert.messageText == kThanks; }));
  }
};

TEST_F(FeedbackWayTest, FromTheMenuToTheService) {
  std::filesystem::create_directories(home.file("Library/Logs"));
  std::ofstream(home.file("Library/Logs/Velmara.log"))
      << "1999-01-01 long ago\n"
      << getDateStrInYYYYMMDDFormat(systemClock().wall()) << " a recent line\nand \xFF its rest\n";
  std::atomic<bool> mayAnswer = false;
  std::atomic<bool> hasRead = false;
  const RecordingServer server([&](Peer& peer) {
    std::string request = peer.readUntil(kEnvelopeEnd);
    hasRead = true;
    while (!mayAnswer) std::this_thread::yield();
    peer.send(kOk);
    return request;
  });
  launchWith(server);
  FeedbackWindowController& form = openForm();
  part<QAbstractButton>(form, "btnFBSendLogs").click();
  // First the user looks at it.
  auto& shown = part<QPlainTextEdit>(form, "txtWhatIsSent");
  part<QAbstractButton>(form, "linkSendFeedback").click();
  EXPECT_TRUE(waitUntil([&] { return shown.toPlainText().contains("a recent line"); }));
  EXPECT_FALSE(shown.toPlainText().contains("long ago"));
  EXPECT_TRUE(shown.toPlainText().contains("SER1"));
  const Heartbeat heartbeat;
  fillAndSubmit(form, "It <works> & caf\xC3\xA9.");
  EXPECT_EQ(delegate().uploadsUnderWay(), 1U);
  EXPECT_TRUE(waitUntil([&] { return hasRead.load(); }));
  EXPECT_EQ(thanks(), 0U) << "not before the service has answered";
  mayAnswer = true;
  ASSERT_TRUE(waitUntil([&] { return delegate().uploadsUnderWay() == 0; }));
  EXPECT_EQ(thanks(), 1U);
  EXPECT_LT(heartbeat.longestPause(), 200 * testing_support::kSlowness);
  ASSERT_TRUE(waitUntil([&] { return server.requests().size() == 1; }));
  const std::string request = server.requests()[0];
  EXPECT_THAT(request, testing::StartsWith("POST /feedback HTTP/1.1\r\n"));
  EXPECT_THAT(request, HasSubstr("SOAPAction: urn:f/UploadFeedback\r\n"));
  EXPECT_THAT(request, HasSubstr("&lt;email&gt;a@b.co&lt;/email&gt;"));
  EXPECT_THAT(request, HasSubstr("&gt;I want to report a problem&lt;"));
  EXPECT_THAT(request, HasSubstr("&gt;It (lessthan)works&gt; &amp;amp; caf\xC3\xA9.&lt;"));
  EXPECT_THAT(request, HasSubstr(" a recent line\nand \xEF\xBF\xBD its rest\n"));
  EXPECT_THAT(request, Not(HasSubstr("long ago")));
  EXPECT_THAT(request, HasSubstr("SCAN_LOGSNOTSELECTED"));
  EXPECT_THAT(request, HasSubstr("&lt;machineid&gt;SER1&lt;"));
}

TEST_F(FeedbackWayTest, ThanksExactlyWhenAnAnswerCameWhole) {
  struct Case {
    const char* name;
    RecordingServer::Script script;
    std::size_t thanks;
  };
  const auto answering = [](std::string_view answer) {
    return [answer](Peer& peer) { return recordAndAnswer(peer, kEnvelopeEnd, answer); };
  };
  const Case cases[] = {
      {"500", answering("HTTP/1.1 500 No\r\nContent-Length: 0\r\n\r\n"), 1},
      {"hangs up", answering(""), 0},
      {"resets",
       [](Peer& peer) {
         std::string request = peer.readUntil(kEnvelopeEnd);
         peer.reset();
         return request;
       },
       0},
      {"breaks off", answering("HTTP/1.1 200 OK\r\nContent-Length: 9\r\n\r\nok"), 0},
      {"sends elsewhere", answering("HTTP/1.1 302 Go\r\nLocation: http://elsewhere.test/\r\n\r\n"),
       1},
  };
  for (const Case& c : cases) {
    const RecordingServer server(c.script);
    launchWith(server);
    alerts.shown.clear();
    fillAndSubmit(openForm(), "text");
    ASSERT_TRUE(waitUntil([&] { return delegate().uploadsUnderWay() == 0; })) << c.name;
    QApplication::processEvents();
    EXPECT_EQ(thanks(), c.thanks) << c.name;
    EXPECT_EQ(alerts.shown.size(), c.thanks) << c.name;
    end();
  }
}

TEST_F(FeedbackWayTest, WithoutTheInternetNothingLeavesTheForm) {
  const RecordingServer server([](Peer& peer) { return recordAndAnswer(peer, kEnvelopeEnd, kOk); });
  launchWith(server);
  delegate().isInternetAvailable = false;
  FeedbackWindowController& form = openForm();
  QTest::mouseClick(&part<QPushButton>(form, "btnFBSubmit"), Qt::LeftButton);
  ASSERT_EQ(alerts.shown.size(), 1U);
  EXPECT_EQ(alerts.shown[0].messageText, "Internet Not Connected");
  EXPECT_TRUE(form.isVisible());
  EXPECT_EQ(delegate().uploadsUnderWay(), 0U);
  // The network is back, and so is the way.
  delegate().isInternetAvailable = true;
  fillAndSubmit(form, "text");
  EXPECT_TRUE(waitUntil([&] { return thanks() == 1; }));
}

TEST_F(FeedbackWayTest, TheFormMayBeOpenedAgainWhileAnUploadRuns) {
  const RecordingServer silent([](Peer& peer) { return recordInSilence(peer, kEnvelopeEnd); });
  launchWith(silent);
  fillAndSubmit(openForm(), "first");
  fillAndSubmit(openForm(), "second");
  EXPECT_EQ(delegate().uploadsUnderWay(), 2U);
  ASSERT_TRUE(waitUntil([&] { return logged("connection: didSendBodyData:") >= 0; }));
  FeedbackWindowController& form = openForm();
  EXPECT_EQ(part<QPlainTextEdit>(form, "txtViewFBExp").toPlainText(), "");
  part<QAbstractButton>(form, "linkSendFeedback").click();
  // The end, with the form open, uploads under way and a report being gathered.
  QElapsedTimer taken;
  taken.start();
  end();
  EXPECT_LT(taken.elapsed(), 200 * testing_support::kSlowness);
  QApplication::processEvents();
  EXPECT_EQ(thanks(), 0U);
}

}  // namespace
}  // namespace velmara
