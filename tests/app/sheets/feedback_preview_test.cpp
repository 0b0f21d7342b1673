#include "app/sheets/feedback_preview.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QCheckBox>
#include <QElapsedTimer>
#include <QPushButton>

#include "app/sheets/feedback_form_fixture.h"
#include "support/slowness.h"

namespace velmara {
namespace {

using testing::HasSubstr;
using testing_support::FeedbackFormTest;

FeedbackReport reportFor(const FeedbackForm& form, const std::string& log) {
  FeedbackReport report;
  report.appName = "Velmara";
  report.email = form.email;
  report.feedbackType = form.type;
  report.content = form.experience;
  if (form.sendLogs) report.logPart = log;
  return report;
}

TEST_F(FeedbackFormTest, ShowsWhatIsSentBeforeItIs) {
  auto& link = part<QPushButton>("linkSendFeedback");
  email().setText("ME@B.CO ");
  EXPECT_FALSE(part("txtWhatIsSent").isVisible());
  QTest::mouseClick(&link, Qt::LeftButton);
  ASSERT_EQ(described.size(), 1U);
  EXPECT_TRUE(part("txtWhatIsSent").isVisible());
  EXPECT_TRUE(part<QPlainTextEdit>("txtWhatIsSent").isReadOnly());
  described[0].second(reportFor(described[0].first, {}));
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
  described.back().second(reportFor(described.back().first, {}));
  EXPECT_EQ(whatIsSent(), "");
}

TEST_F(FeedbackFormTest, AnEnormousLogIsShownByItsEnd) {
  std::string log;
  while (log.size() < (std::size_t{64} << 20)) log += "2026-01-01 an older line\n";
  log += "2026-01-02 the newest line\n";
  part<QCheckBox>("btnFBSendLogs").setChecked(true);
  QTest::mouseClick(&part("linkSendFeedback"), Qt::LeftButton);
  ASSERT_EQ(described.size(), 1U);
  const FeedbackReport report = reportFor(described[0].first, log);
  QElapsedTimer taken;
  taken.start();
  described[0].second(report);
  EXPECT_LT(taken.elapsed(), 200 * testing_support::kSlowness);
  EXPECT_LT(whatIsSent().size(), 40'000);
  EXPECT_THAT(whatIsSent().toStdString(), HasSubstr("[67.1 MB before this are sent too]\n2026"));
  EXPECT_THAT(whatIsSent().toStdString(), HasSubstr("the newest line\n"));
}

TEST(ShortenedForReadingTest, KeepsWholeLinesAndWholeCharacters) {
  struct Case {
    const char* name;
    std::string text;
    std::string kept;  // after the note; all of it where there is none
    bool hasNote;
  };
  const Case cases[] = {
      {"short", "ab\ncd", "ab\ncd", false},
      {"as long as may be", "0123456789", "0123456789", false},
      {"lines", "aaa\nbbb\nccc\nddd", "ccc\nddd", true},
      {"one line", "0123456789abc", "3456789abc", true},
      {"only the last line end", "0123456789ab\n", "3456789ab\n", true},
      {"cut inside a character", "xxxx\xF0\x9F\x98\x80zzzzzzzz", "zzzzzzzz", true},
  };
  for (const Case& c : cases) {
    FeedbackReport report;
    report.logPart = c.text;
    const std::string shown = shortenedForReading(report, 10).logPart;
    EXPECT_EQ(shown.starts_with('['), c.hasNote) << c.name;
    EXPECT_EQ(c.hasNote ? shown.substr(shown.find('\n') + 1) : shown, c.kept) << c.name;
  }
}

}  // namespace
}  // namespace velmara
