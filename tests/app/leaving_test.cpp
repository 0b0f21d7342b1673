// Saving, and leaving a photo or the program: nothing is lost, and there is always a way out.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QLabel>
#include <QPushButton>

#include "app/screen_fixture.h"
#include "imaging/image_reader.h"
#include "widgets/action_button.h"

namespace velmara {
namespace {

using testing::HasSubstr;
using testing_support::ScreenTest;

TEST_F(ScreenTest, SavesTheWholePhotoAndThenMayBeLeft) {
  ASSERT_TRUE(openAndWait(photo()));
  click("btnExport");
  ASSERT_EQ(panels.saveOptions.size(), 1U);
  EXPECT_EQ(panels.saveOptions[0].title, "Save Image");
  EXPECT_EQ(panels.saveOptions[0].nameFieldStringValue, "photo-denoised");
  EXPECT_EQ(panels.saveOptions[0].directory, folder.path().string());
  EXPECT_THAT(panels.saveTypes, testing::ElementsAre("png", "jpeg", "tiff", "bmp", "gif"));
  alerts.answers = {1};
  panels.answerSave(folder.file("out.png"));
  ASSERT_TRUE(waitUntil([this] { return std::filesystem::exists(folder.file("out.png")); }));
  ASSERT_TRUE(waitUntil([this] { return shownInFront == 1; }));
  EXPECT_THAT(alerts.shown.back().messageText, HasSubstr("Would you like to rate"));
  const auto saved = readImage(folder.file("out.png"));
  ASSERT_TRUE(saved) << saved.error();
  EXPECT_EQ(saved->bitmap().width(), 256);
  auto& notice = view<QPushButton>("btnSaved");
  EXPECT_TRUE(notice.isVisible());
  EXPECT_EQ(notice.text(), "Saved out.png");
  notice.click();
  EXPECT_EQ(workspace.chosen.back(), folder.file("out.png"));
  const int runs = engine.runs();
  EXPECT_TRUE(window().close());
  EXPECT_EQ(engine.runs(), runs);
}

TEST_F(ScreenTest, AFailedSaveIsToldAndTheWorkStaysUnsaved) {
  ASSERT_TRUE(openAndWait(photo()));
  for (const std::string target : {"out.png", "missing/out.png"}) {
    engine.givesNothing = target == "out.png";
    alerts.shown.clear();
    click("btnExport");
    panels.answerSave(folder.file(target));
    ASSERT_TRUE(waitUntil([this] { return !alerts.shown.empty(); }));
    EXPECT_THAT(alerts.shown[0].messageText + alerts.shown[0].informativeText,
                HasSubstr(engine.givesNothing ? "filtered" : target));
    ASSERT_TRUE(waitUntil([this] { return !session().isRunningAlgorithm(); }));
    EXPECT_FALSE(std::filesystem::exists(folder.file("out.png")));
    EXPECT_FALSE(window().close());
    EXPECT_TRUE(view("windowSaveChanges").isVisible());
    click(engine.givesNothing ? "btnCancelChanges" : "btnDontSaveChanges");
  }
  EXPECT_EQ(terminations, 1);
}

class WithoutFoldersTest : public ScreenTest, public testing::WithParamInterface<bool> {
 protected:
  std::string temporaryDirectory() const override {
    return GetParam() ? ScreenTest::temporaryDirectory() : std::string();
  }
};

INSTANTIATE_TEST_SUITE_P(NoneOrGone, WithoutFoldersTest, testing::Bool());

// The folder for temporary files could not be made, or is gone; then a card is pulled after its
// photo was shown: its pixels are in memory.
TEST_P(WithoutFoldersTest, PreviewAndExportNeedNeitherTheTemporaryFolderNorThePhotosFile) {
  const std::string name = folder.path().filename().string() + ".png";
  std::filesystem::remove_all(temporary.path());
  ASSERT_TRUE(openAndWait(photo(name)));
  std::filesystem::remove(photo(name));
  click("btnZoomIn");
  ASSERT_TRUE(waitForResult());
  EXPECT_FALSE(std::filesystem::exists("/" + name));
  alerts.answers = {1};
  click("btnExport");
  panels.answerSave(folder.file("out.png"));
  ASSERT_TRUE(waitUntil([this] { return std::filesystem::exists(folder.file("out.png")); }));
  ASSERT_TRUE(waitUntil([this] { return !session().isRunningAlgorithm(); }));
  EXPECT_EQ(readImage(folder.file("out.png"))->bitmap().width(), 256);
  EXPECT_TRUE(view<ActionButton>("btnExport").isEnabled());
}

TEST_F(ScreenTest, TheProgramEndsOnceTheFileOnItsWayIsThere) {
  ASSERT_TRUE(openAndWait(photo()));
  engine.close();
  click("btnExport");
  panels.answerSave(folder.file("out.png"));
  ASSERT_TRUE(waitUntil([this] { return engine.runs() == 2; }));
  click("btnExport");
  EXPECT_EQ(view<ActionButton>("btnExport").state(), 0) << "a click refused";
  QTest::keyClick(&window(), Qt::Key_Q, Qt::ControlModifier);
  EXPECT_TRUE(view("windowSaveChanges").isVisible());
  EXPECT_TRUE(session().isQuitFromMenu());
  EXPECT_EQ(terminations, 0);
  alerts.answers = {0};
  engine.open();
  ASSERT_TRUE(waitUntil([this] { return terminations == 1; }));
  EXPECT_FALSE(view("windowSaveChanges").isVisible());
  EXPECT_TRUE(std::filesystem::exists(folder.file("out.png")));
  ASSERT_TRUE(waitUntil([this] { return !alerts.shown.empty(); }));
  EXPECT_EQ(workspace.opened.back().first, "appstream://velmara") << "YES to the invitation";
}

TEST_F(ScreenTest, TheQualitySliderIsThereButWithoutEffect) {
  ASSERT_TRUE(openAndWait(photo()));
  click("btnExport");
  auto* options = qobject_cast<QWidget*>(panels.saveOptions.back().accessoryView);
  ASSERT_NE(options, nullptr);
  EXPECT_FALSE(options->findChild<QWidget*>("sliderExportQuality")->isEnabled());
  EXPECT_NE(options->findChild<QLabel*>("lblQualityNote")->text(), "");
  const auto isQualityShown = [&] {
    return !options->findChild<QWidget*>("viewExportQuality")->isHidden();
  };
  EXPECT_FALSE(isQualityShown());
  screen().selectFormat(1);
  EXPECT_TRUE(isQualityShown());
  EXPECT_THAT(panels.saveTypes, testing::ElementsAre("jpeg"));
  panels.answerSave({});
}

}  // namespace
}  // namespace velmara
