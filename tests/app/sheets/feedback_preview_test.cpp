#include "app/sheets/feedback_preview.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QCheckBox>
#include <QPushButton>

#include <chrono>

#include "app/sheets/feedback_form_fixture.h"
#include "support/scratch_folder.h"

namespace velmara {
namespace {

using testing::HasSubstr;
using testing_support::FeedbackFormTest;

class FeedbackPreviewTest : public FeedbackFormTest {
 protected:
  FeedbackReport reportFor(const FeedbackForm& form, const std::string& log = {}) {
    FeedbackReport report;
    report.appName = "Velmara";
    report.email = form.email;
    report.feedbackType = form.type;
    report.content = form.experience;
    if (form.sendLogs) {
      testing_support::writeFile(folder_.file("log"), "2026-01-01 " + log);
      using namespace std::chrono;
      report.log = readLogsContent(folder_.file("log"), sys_days(2026y / 1 / 1) + 12h);
    }
    return report;
  }

 private:
  const testing_support::ScratchFolder folder_;
};

TEST_F(FeedbackPreviewTest, ShowsWhatIsSentBeforeItIs) {
  auto& link = part<QPushButton>("linkSendFeedback");
  email().setText("ME@B.CO ");
  EXPECT_FALSE(part("txtWhatIsSent").isVisible());
  QTest::mouseClick(&link, Qt::LeftButton);
  ASSERT_EQ(described.size(), 1U);
  EXPECT_TRUE(part("txtWhatIsSent").isVisible());
  EXPECT_TRUE(part<QPlainTextEdit>("txtWhatIsSent").isReadOnly());
  described[0].second(reportFor(described[0].first));
  EXPECT_THAT(whatIsSent().toStdString(), HasSubstr("me@b.co\n"));
  EXPECT_THAT(whatIsSent().toStdString(), HasSubstr("Log: not included"));

  // Typing changes the words at once and reads no file.
  experience().setPlainText("Typed later. ");
  EXPECT_THAT(whatIsSent().toStdString(), HasSubstr("Typed later.\n"));
  EXPECT_EQ(described.size(), 1U);

  // Ticking reads again; an answer that was overtaken is not shown.
  part<QCheckBox>("btnFBSendLogs").setChecked(true);
  part<QCheckBox>("btnFBSendScanLog").setChecked(true);
  ASSERT_EQ(described.size(), 3U);
  described[1].second(reportFor(described[1].first, "the older log"));
  EXPECT_EQ(whatIsSent().indexOf("older"), -1);
  described[2].second(reportFor(described[2].first, "the newer log"));
  EXPECT_THAT(whatIsSent().toStdString(), HasSubstr("the newer log"));

  // Closed, it is forgotten, and what comes late with it.
  part<QCheckBox>("btnFBSendLogs").setChecked(false);
  QTest::mouseClick(&link, Qt::LeftButton);
  EXPECT_FALSE(part("txtWhatIsSent").isVisible());
  described.back().second(reportFor(described.back().first));
  EXPECT_EQ(whatIsSent(), "");
}

TEST_F(FeedbackPreviewTest, OfALongTextTheEndIsShownInWholeLinesAndCharacters) {
  const std::string smile = "\xF0\x9F\x98\x80";
  std::string lines;
  while (lines.size() < (std::size_t{4} << 20)) lines += "an older line\n";
  std::string smiles;
  while (smiles.size() < (std::size_t{1} << 17)) smiles += smile;
  part<QCheckBox>("btnFBSendLogs").setChecked(true);
  QTest::mouseClick(&part("linkSendFeedback"), Qt::LeftButton);
  ASSERT_EQ(described.size(), 1U);
  FeedbackReport report = reportFor(described[0].first, lines + "the newest line");
  report.usage = smiles + "z";
  described[0].second(report);
  const std::string shown = whatIsSent().toStdString();
  EXPECT_THAT(shown, HasSubstr("[4.2 MB before this are sent too]\nan older line\n"));
  EXPECT_THAT(shown, testing::EndsWith("an older line\nthe newest line"));
  EXPECT_THAT(shown, HasSubstr("kB before this are sent too]\n" + smile));
  EXPECT_LT(shown.size(), 70'000U);
}

}  // namespace
}  // namespace velmara
