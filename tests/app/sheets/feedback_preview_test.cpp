#include "app/sheets/feedback_preview.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QCheckBox>

#include <chrono>

#include "app/sheets/feedback_form_fixture.h"
#include "support/scratch_folder.h"

namespace velmara {
namespace {

using testing::HasSubstr;
using testing_support::FeedbackFormTest;

class FeedbackPreviewTest : public FeedbackFormTest {
 protected:
  /// Answers what was asked for so many times ago.
  void answer(std::size_t which, const std::string& log = {}, const std::string& usage = {}) {
    const FeedbackForm& form = described.at(which).first;
    FeedbackReport report;
    report.appName = "Velmara";
    report.email = form.email;
    report.feedbackType = form.type;
    report.content = form.experience;
    report.usage = usage;
    if (form.sendLogs) {
      testing_support::writeFile(folder_.file("log"), "2026-01-01 " + log);
      using namespace std::chrono;
      report.log = readLogsContent(folder_.file("log"), sys_days(2026y / 1 / 1) + 12h);
    }
    described[which].second(report);
  }

 private:
  const testing_support::ScratchFolder folder_;
};

TEST_F(FeedbackPreviewTest, ShowsWhatIsSentBeforeItIs) {
  fill("ME@B.CO ", 0, "");
  EXPECT_FALSE(part("txtWhatIsSent").isVisible());
  click("linkSendFeedback");
  ASSERT_EQ(described.size(), 1U);
  EXPECT_TRUE(part("txtWhatIsSent").isVisible());
  EXPECT_TRUE(part<QPlainTextEdit>("txtWhatIsSent").isReadOnly());
  answer(0);
  EXPECT_THAT(whatIsSent().toStdString(), HasSubstr("me@b.co\n"));
  EXPECT_THAT(whatIsSent().toStdString(), HasSubstr("Log: not included"));

  // Typing changes the words at once and reads no file.
  fill("ME@B.CO ", 0, "Typed later. ");
  EXPECT_THAT(whatIsSent().toStdString(), HasSubstr("Typed later.\n"));
  EXPECT_EQ(described.size(), 1U);

  // Ticking reads again; an answer that was overtaken is not shown.
  part<QCheckBox>("btnFBSendLogs").setChecked(true);
  part<QCheckBox>("btnFBSendScanLog").setChecked(true);
  ASSERT_EQ(described.size(), 3U);
  answer(1, "the older log");
  EXPECT_EQ(whatIsSent().indexOf("older"), -1);
  answer(2, "the newer log");
  EXPECT_THAT(whatIsSent().toStdString(), HasSubstr("the newer log"));

  // Of a long text the end is shown, in whole lines and characters.
  const std::string smile = "\xF0\x9F\x98\x80";
  std::string lines;
  while (lines.size() < (std::size_t{4} << 20)) lines += "an older line\n";
  std::string smiles;
  while (smiles.size() < (std::size_t{1} << 17)) smiles += smile;
  answer(2, lines + "the newest line", smiles + "z");
  const std::string shown = whatIsSent().toStdString();
  EXPECT_THAT(shown, HasSubstr("[4.2 MB before this are sent too]\nan older line\n"));
  EXPECT_THAT(shown, testing::EndsWith("an older line\nthe newest line"));
  EXPECT_THAT(shown, HasSubstr("kB before this are sent too]\n" + smile));
  EXPECT_LT(shown.size(), 70'000U);

  // Closed, it is forgotten, and what comes late with it.
  part<QCheckBox>("btnFBSendLogs").setChecked(false);
  click("linkSendFeedback");
  EXPECT_FALSE(part("txtWhatIsSent").isVisible());
  answer(described.size() - 1);
  EXPECT_EQ(whatIsSent(), "");
}

}  // namespace
}  // namespace velmara
