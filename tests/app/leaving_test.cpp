// Saving, and leaving a photo or the program: nothing is lost, and there is always a way out.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QLabel>

#include <algorithm>

#include "app/screen_fixture.h"
#include "imaging/image_reader.h"
#include "support/run_program.h"

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
  EXPECT_EQ(photos.selectedImageFile->fileName, "first.png");

  screen().photoDraggedWithPath(photo("second.png"));
  click("btnDontSaveChanges");
  EXPECT_FALSE(sheet.isVisible());
  EXPECT_EQ(photos.selectedImageFile->fileName, "second.png");
  ASSERT_TRUE(waitForResult());
}

TEST_F(ScreenTest, SavesTheWholePhotoAndThenMayBeLeft) {
  ASSERT_TRUE(openAndWait(photo()));
  click("btnExport");
  ASSERT_EQ(panels.saveOptions.size(), 1U);
  EXPECT_EQ(panels.saveOptions[0].nameFieldStringValue, "photo");
  EXPECT_THAT(panels.saveTypes, testing::ElementsAre("png", "jpeg", "tiff", "bmp", "gif"));
  alerts.answers = {1};
  panels.answerSave(folder.file("out.png"));
  ASSERT_TRUE(waitUntil([this] { return std::filesystem::exists(folder.file("out.png")); }));
  ASSERT_TRUE(waitUntil([this] { return shownInFront == 1; }));
  EXPECT_THAT(alerts.shown.back().messageText, HasSubstr("Would you like to rate"));
  const auto saved = readImage(folder.file("out.png"));
  ASSERT_TRUE(saved) << saved.error();
  EXPECT_EQ(saved->bitmap().width(), 256);
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

TEST_F(ScreenTest, AnExportNeedsNoRegionFile) {
  ASSERT_TRUE(openAndWait(photo()));
  ASSERT_TRUE(waitUntil(isGlobalQueueIdle));
  std::filesystem::remove(photos.selectedImageFileToProccessing->filePath);
  click("btnExport");
  panels.answerSave(folder.file("out.png"));
  ASSERT_TRUE(waitUntil([this] { return std::filesystem::exists(folder.file("out.png")); }));
  EXPECT_FALSE(screen().session().isExportingPhoto);
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

TEST_F(ScreenTest, ARunUnderTheSavePanelIsWaitedFor) {
  ASSERT_TRUE(openAndWait(photo()));
  click("btnExport");
  engine.close();
  QTest::keyClick(&window(), Qt::Key_PageUp);
  ASSERT_TRUE(screen().session().runState().isRunningAlgorithm());
  panels.answerSave(folder.file("out.png"));
  EXPECT_FALSE(screen().session().isExportingPhoto);
  engine.open();
  ASSERT_TRUE(waitUntil([this] { return std::filesystem::exists(folder.file("out.png")); }));
  // What is saved is the level of the run that came in between.
  EXPECT_EQ(readImage(folder.file("out.png"))->bitmap().width(), 256);
  EXPECT_TRUE(waitUntil([this] { return !alerts.shown.empty(); }));
}

TEST_F(ScreenTest, TheWindowWaitsForAFileBeingWritten) {
  ASSERT_TRUE(openAndWait(photo()));
  click("btnExport");
  panels.answerSave(folder.file("first.png"));
  ASSERT_TRUE(waitUntil([this] { return !alerts.shown.empty(); }));
  ASSERT_TRUE(waitUntil([this] { return !screen().session().runState().isRunningAlgorithm(); }));
  click("btnExport");
  panels.answerSave(folder.file("second.png"));
  // Nothing is unsaved, but the second file is on its way.
  const bool isWriting = !std::filesystem::exists(folder.file("second.png"));
  EXPECT_EQ(window().close(), !isWriting);
  ASSERT_TRUE(waitUntil([&] { return !isWriting || terminations == 1; }));
  EXPECT_TRUE(std::filesystem::exists(folder.file("second.png")));
}

}  // namespace
}  // namespace velmara
