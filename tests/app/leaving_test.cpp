// Saving, and leaving a photo or the program: nothing is lost, and there is always a way out.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QLabel>
#include <QPushButton>

#include <algorithm>

#include "app/screen_fixture.h"
#include "imaging/image_reader.h"
#include "support/run_program.h"
#include "widgets/action_button.h"

namespace velmara {
namespace {

using testing::HasSubstr;
using testing_support::runProgram;
using testing_support::ScreenTest;

TEST_F(ScreenTest, ASecondPhotoAsksAboutTheFirst) {
  ASSERT_TRUE(openAndWait(photo("first.png")));
  screen().photoDraggedWithPath(photo("second.png"));
  auto& sheet = view("windowSaveChanges");
  ASSERT_TRUE(sheet.isVisible());
  EXPECT_EQ(view<QLabel>("lblSaveChangeHeader").text(),
            "Do you want to save the changes made to the document \"first.png\" ?");
  QTest::keyClick(&sheet, Qt::Key_Escape);
  EXPECT_FALSE(sheet.isVisible());
  EXPECT_EQ(session().selectedImageFile()->fileName, "first.png");

  screen().photoDraggedWithPath(photo("second.png"));
  click("btnDontSaveChanges");
  EXPECT_FALSE(sheet.isVisible());
  EXPECT_EQ(session().selectedImageFile()->fileName, "second.png");
  ASSERT_TRUE(waitForResult());
}

TEST_F(ScreenTest, SavesTheWholePhotoAndThenMayBeLeft) {
  ASSERT_TRUE(openAndWait(photo()));
  click("btnExport");
  ASSERT_EQ(panels.saveOptions.size(), 1U);
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
  EXPECT_EQ(workspace.opened.back().first, "file://" + folder.path().string());
  const int runs = engine.runs();
  EXPECT_TRUE(window().close());
  EXPECT_EQ(engine.runs(), runs);
}

TEST_F(ScreenTest, AFailedWriteIsToldAndTheWorkStaysUnsaved) {
  ASSERT_TRUE(openAndWait(photo()));
  click("btnExport");
  panels.answerSave(folder.file("missing/out.png"));
  ASSERT_TRUE(waitUntil([this] { return !alerts.shown.empty(); }));
  EXPECT_THAT(alerts.shown[0].messageText + alerts.shown[0].informativeText,
              HasSubstr("missing/out.png"));
  EXPECT_FALSE(window().close());
  EXPECT_TRUE(view("windowSaveChanges").isVisible());
  click("btnDontSaveChanges");
  EXPECT_EQ(terminations, 1);
}

// A card is pulled after the photo was shown: its pixels are in memory.
TEST_F(ScreenTest, APhotoWhoseFileHasGoneIsSaved) {
  ASSERT_TRUE(openAndWait(photo()));
  click("btnZoomIn");
  ASSERT_TRUE(waitForResult());
  std::filesystem::remove(photo());
  alerts.answers = {1};
  click("btnExport");
  panels.answerSave(folder.file("out.png"));
  ASSERT_TRUE(waitUntil([this] { return std::filesystem::exists(folder.file("out.png")); }));
  ASSERT_TRUE(waitUntil([this] { return !session().isRunningAlgorithm(); }));
  EXPECT_EQ(readImage(folder.file("out.png"))->bitmap().width(), 256);
  EXPECT_TRUE(view<ActionButton>("btnExport").isEnabled());
}

TEST_F(ScreenTest, NeitherPreviewNorExportNeedTheTemporaryFolder) {
  std::filesystem::remove_all(temporary.path());
  ASSERT_TRUE(openAndWait(photo()));
  alerts.answers = {1};
  click("btnExport");
  panels.answerSave(folder.file("out.png"));
  ASSERT_TRUE(waitUntil([this] { return std::filesystem::exists(folder.file("out.png")); }));
}

TEST_F(ScreenTest, AnotherPhotoDuringAnExportReplacesItWithoutAFile) {
  ASSERT_TRUE(openAndWait(photo("first.png")));
  engine.close();
  click("btnExport");
  panels.answerSave(folder.file("out.png"));
  ASSERT_TRUE(waitUntil([this] { return engine.runs() == 2; }));
  click("btnExport");
  EXPECT_EQ(view<ActionButton>("btnExport").state(), 0) << "a click refused";
  center.post(notifications::kOpenPhotoFromMenuTapped);
  panels.answerOpen({photo("second.png")});
  click("btnDontSaveChanges");
  engine.open();
  ASSERT_TRUE(waitForResult());
  EXPECT_EQ(session().selectedImageFile()->fileName, "second.png");
  EXPECT_TRUE(view<QLabel>("lblPath").text().endsWith("second.png"));
  EXPECT_FALSE(std::filesystem::exists(folder.file("out.png")));
  alerts.answers = {1};
  click("btnExport");
  panels.answerSave(folder.file("out.png"));
  ASSERT_TRUE(waitUntil([this] { return std::filesystem::exists(folder.file("out.png")); }));
}

TEST_F(ScreenTest, SaveInTheQuestionDuringARunSavesThenOpens) {
  ASSERT_TRUE(openAndWait(photo("first.png")));
  engine.close();
  screen().changeLevel(1);
  screen().photoDraggedWithPath(photo("second.png"));
  click("btnSaveChanges");
  alerts.answers = {1};
  panels.answerSave(folder.file("out.png"));
  EXPECT_EQ(session().state(), EditState::kExportDue);
  engine.open();
  ASSERT_TRUE(
      waitUntil([this] { return session().selectedImageFile()->fileName == "second.png"; }));
  EXPECT_TRUE(std::filesystem::exists(folder.file("out.png")));
  ASSERT_TRUE(waitForResult());
}

TEST_F(ScreenTest, AnEngineThatFailsDuringAnExportLeavesAWayOut) {
  ASSERT_TRUE(openAndWait(photo()));
  engine.givesNothing = true;
  click("btnExport");
  panels.answerSave(folder.file("out.png"));
  ASSERT_TRUE(waitUntil([this] { return !alerts.shown.empty(); }));
  EXPECT_FALSE(std::filesystem::exists(folder.file("out.png")));
  EXPECT_FALSE(window().close());
  click("btnDontSaveChanges");
  EXPECT_EQ(terminations, 1);
}

TEST_F(ScreenTest, WhatIsSavedIsTheLevelOfTheRunUnderThePanel) {
  ASSERT_TRUE(openAndWait(photo()));
  click("btnExport");
  engine.close();
  QTest::keyClick(&window(), Qt::Key_PageUp);
  ASSERT_TRUE(session().isRunningAlgorithm());
  panels.answerSave(folder.file("out.png"));
  EXPECT_FALSE(session().isExportingPhoto());
  engine.open();
  ASSERT_TRUE(waitUntil([this] { return std::filesystem::exists(folder.file("out.png")); }));
  EXPECT_EQ(engine.last().templateWinSize, 1) << "level 2";
  EXPECT_TRUE(waitUntil([this] { return !alerts.shown.empty(); }));
}

TEST_F(ScreenTest, TheProgramEndsOnceTheFileOnItsWayIsThere) {
  ASSERT_TRUE(openAndWait(photo()));
  engine.close();
  click("btnExport");
  panels.answerSave(folder.file("out.png"));
  ASSERT_TRUE(waitUntil([this] { return engine.runs() == 2; }));
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
