// The whole way of feedback: the menu, the form, the report, the service, the thanks.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPlainTextEdit>
#include <QPushButton>

#include <algorithm>
#include <filesystem>

#include "app/lifecycle/launch_fixture.h"
#include "app/sheets/feedback_window_controller.h"
#include "services/text.h"
#include "support/network_namespace.h"

namespace velmara {
namespace {

using testing::HasSubstr;
using testing::Not;
using testing_support::answering;
using testing_support::kEnvelopeEnd;
using testing_support::kOk;
using testing_support::LaunchTest;
using testing_support::RecordingServer;
using testing_support::silent;

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
    command("&Feedback…").trigger();
    auto* form = delegate().windowMain()->findChild<FeedbackWindowController*>();
    EXPECT_NE(form, nullptr);
    EXPECT_TRUE(QTest::qWaitForWindowActive(form));
    return *form;
  }
  template <typename Widget>
  static Widget& part(FeedbackWindowController& form, const char* name) {
    return *form.findChild<Widget*>(QLatin1String(name));
  }
  static void fillAndSubmit(FeedbackWindowController& form, const char* experience) {
    part<QLineEdit>(form, "txtFBEmailID").setText("A@b.co");
    part<QComboBox>(form, "btnFBType").setCurrentIndex(3);
    part<QPlainTextEdit>(form, "txtViewFBExp").setPlainText(experience);
    QTest::mouseClick(&part<QPushButton>(form, "btnFBSubmit"), Qt::LeftButton);
  }
  long thanks() const {
    return std::ranges::count(alerts.shown, "Thank you for providing us the feedback.",
                              &Alert::messageText);
  }
};

TEST_F(FeedbackWayTest, FromTheMenuToTheService) {
  std::filesystem::create_directories(home.file("Library/Logs"));
  testing_support::writeFile(home.file("Library/Logs/Velmara.log"),
                             "1999-01-01 long ago\n" +
                                 getDateStrInYYYYMMDDFormat(systemClock().wall()) +
                                 " a recent line\nand \xFF its rest\n");
  std::atomic<bool> hasRead = false;
  std::atomic<bool> mayAnswer = false;
  const RecordingServer server([&](testing_support::Peer& peer) {
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
  fillAndSubmit(form, "It <works> & caf\xC3\xA9.");
  EXPECT_FALSE(form.isVisible());
  EXPECT_EQ(delegate().uploadsUnderWay(), 1U);
  EXPECT_TRUE(waitUntil([&] { return hasRead.load(); }));
  EXPECT_EQ(thanks(), 0) << "not before the service has answered";
  mayAnswer = true;
  ASSERT_TRUE(waitUntil([&] { return delegate().uploadsUnderWay() == 0; }));
  EXPECT_EQ(thanks(), 1);
  ASSERT_TRUE(server.waitForRequests(1));
  const std::string request = server.requests()[0];
  EXPECT_THAT(request, testing::StartsWith("POST /feedback HTTP/1.1\r\n"));
  for (const char* sent :
       {"SOAPAction: urn:f/UploadFeedback\r\n", "&lt;email&gt;a@b.co&lt;/email&gt;",
        "&gt;I want to report a problem&lt;",
        "&gt;It (lessthan)works&gt; &amp;amp; caf\xC3\xA9.&lt;",
        " a recent line\nand \xEF\xBF\xBD its rest\n", "SCAN_LOGSNOTSELECTED",
        "&lt;machineid&gt;SER1&lt;"}) {
    EXPECT_THAT(request, HasSubstr(sent));
  }
  EXPECT_THAT(request, Not(HasSubstr("long ago")));
}

// As this program is built when no addresses are given.
TEST_F(FeedbackWayTest, WithoutAServiceTheReportBecomesAFileAndHelpAPageOfOurs) {
  environment.addresses = configuredAddresses();
  environment.bundle = mainBundle();
  launch();
  FeedbackWindowController& form = openForm();
  EXPECT_TRUE(part<QLabel>(form, "lblFBNoService").isVisible());
  fillAndSubmit(form, "It <works>.");
  ASSERT_EQ(panels.saveOptions.size(), 1U);
  EXPECT_THAT(panels.saveOptions[0].nameFieldStringValue,
              testing::MatchesRegex("Velmara-Feedback [0-9]+T[0-9]+ [0-9]+\\.xml"));
  panels.answerSave(home.file("report.xml"));
  EXPECT_TRUE(waitUntil([&] { return !form.isVisible(); }));
  EXPECT_THAT(testing_support::contentsOf(home.file("report.xml")),
              HasSubstr("<content>It (lessthan)works>.</content>"));
  EXPECT_EQ(logged("connection: "), -1);

  delegate().showVMPHelp();
  ASSERT_EQ(workspace.opened.size(), 1U);
  const QString page = QUrl(QString::fromStdString(workspace.opened[0].first)).toLocalFile();
  EXPECT_THAT(testing_support::contentsOf(page.toStdString()), HasSubstr("<title>Velmara Help"));
}

// In a network of its own; skipped where there is none to be had.
TEST_F(FeedbackWayTest, SubmitAsksForTheInternetAgain) {
  const std::string reason = testing_support::enterNewNetwork();
  if (!reason.empty()) GTEST_SKIP() << reason;
  const RecordingServer server(answering(kEnvelopeEnd, kOk));
  launchWith(server);
  delegate().isInternetAvailable = false;
  FeedbackWindowController& form = openForm();
  fillAndSubmit(form, "text");
  ASSERT_EQ(alerts.shown.size(), 1U);
  EXPECT_EQ(alerts.shown[0].messageText, "Internet Not Connected");
  EXPECT_TRUE(form.isVisible());
  EXPECT_EQ(delegate().uploadsUnderWay(), 0U);
  // The network comes while nobody watches it.
  delegate().internetReachability->stopNotifier();
  testing_support::ipBatch(
      "link add v0 type veth peer name v1\nlink set v1 up\n"
      "link set v0 up\naddr add 10.9.0.2/24 dev v0\n"
      "route add default via 10.9.0.1 dev v0\n");
  fillAndSubmit(form, "text");
  EXPECT_TRUE(waitUntil([&] { return thanks() == 1; }));
}

}  // namespace
}  // namespace velmara
