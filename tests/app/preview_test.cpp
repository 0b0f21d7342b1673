// What is seen of a photo while the window, the line, the zoom and the disk do as they like.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QDragEnterEvent>
#include <QDragLeaveEvent>
#include <QDropEvent>
#include <QLabel>
#include <QMimeData>
#include <QSignalSpy>
#include <QUrl>

#include "app/screen_fixture.h"
#include "base/residual.h"
#include "imaging/image_reader.h"
#include "preview/drop/dragging_view.h"
#include "preview/views/picture_view.h"
#include "support/run_program.h"
#include "widgets/action_button.h"
#include "widgets/split_view.h"
#include "widgets/style.h"

namespace velmara {
namespace {

using testing_support::runProgram;
using testing_support::ScreenTest;

class PreviewTest : public ScreenTest {
 protected:
  bool openInSplitStyle() {
    if (!openAndWait(photo())) return false;
    click("btnSplitMode");
    return waitForResult();
  }
  CustomizedSplitView& line() { return view<CustomizedSplitView>("splitView"); }
  const PictureView& before() { return view<PictureView>("imgFilteredImgVWLeft"); }
  bool lineIsFollowed(int position) {
    line().setPosition(position, 0);
    return waitUntil([&] { return before().frame().width == position; });
  }
};

TEST_F(PreviewTest, TheLineWaitsForTheEndOfAResizeAndWorksAfterIt) {
  ASSERT_TRUE(openInSplitStyle());
  ASSERT_TRUE(lineIsFollowed(100));
  const int runs = engine.runs();
  window().resize(1300, 800);
  line().setPosition(200, 0);
  QApplication::processEvents();
  EXPECT_EQ(before().frame().width, 100);
  EXPECT_FALSE(view("vwDenoisedPreview").isVisible());
  ASSERT_TRUE(waitForRun(runs));
  EXPECT_EQ(regionSeen().bitmap().height(), view("vwImageContainer").height());
  EXPECT_EQ(before().frame().width, 200);
  EXPECT_TRUE(lineIsFollowed(150));
}

// The end of the resize is another photo's.
TEST_F(PreviewTest, AResizeThatAPhotoDidNotSeeDoesNotRunItAgain) {
  ASSERT_TRUE(openAndWait(photo()));
  screen().preview().windowDidResize();
  screen().photoDraggedWithPath(photo("IMG_1.PNG"));
  click("btnDontSaveChanges");
  ASSERT_TRUE(waitForResult());
  screen().preview().windowDidEndLiveResize();
  EXPECT_THAT(log(), testing::Not(testing::Contains("Window resized !!")));
}

// The end of the resize comes during the run.
TEST_F(PreviewTest, TheLineIsAliveAfterARunThatBeganInAResize) {
  ASSERT_TRUE(openInSplitStyle());
  engine.close();
  window().resize(1300, 800);
  screen().changeLevel(1);
  ASSERT_TRUE(session().isRunningAlgorithm());
  ASSERT_TRUE(QSignalSpy(&window(), &AppStoreWindow::windowDidEndLiveResize).wait());
  engine.open();
  ASSERT_TRUE(waitForResult());
  EXPECT_TRUE(lineIsFollowed(150));
  // The result is of what is seen now, not of what was seen when the run began.
  EXPECT_EQ(view<PictureView>("imgFilteredImgVWRight").frame(),
            view<PictureView>("imgPreviewPhoto").frame());
}

TEST_F(PreviewTest, InDualStyleAMovedLineMeansNothing) {
  ASSERT_TRUE(openInSplitStyle());
  const double middle = line().positionOfDividerAtIndex(0);
  click("btnDualMode");
  ASSERT_TRUE(waitForResult());
  const PixelRect shown = before().frame();
  line().setPosition(20, 0);
  QApplication::processEvents();
  EXPECT_EQ(before().frame(), shown);
  EXPECT_FALSE(line().isVisible());
  click("btnSplitMode");
  ASSERT_TRUE(waitForResult());
  EXPECT_EQ(line().positionOfDividerAtIndex(0), middle);
  // Dragged to the right edge it comes back at 90 percent.
  ASSERT_TRUE(lineIsFollowed(line().width() - 20));
  click("btnSingleMode");
  click("btnSplitMode");
  EXPECT_NEAR(line().positionOfDividerAtIndex(0), 0.9 * line().width(), 0.01);
}

TEST_F(PreviewTest, ZoomStepsReachHalfAndTwiceTheSizeAndOneMoreDoesNothing) {
  runProgram({"convert", photo(), "-resize", "40x40!", folder.file("small.png")});
  ASSERT_TRUE(openAndWait(folder.file("small.png")));
  const struct {
    const char* button;
    Control control;
    int steps, percent, width;
  } rows[] = {{"btnZoomIn", Control::btnZoomIn, 10, 10, 80},
              {"btnZoomOut", Control::btnZoomOut, 5, -10, 20}};
  for (const auto& row : rows) {
    QTest::mouseClick(&view("btn100Percent"), Qt::LeftButton);
    EXPECT_EQ(view<QLabel>("txtZoomLevel").text(), "100 %");
    ASSERT_TRUE(waitForResult());
    for (int step = 1; step <= row.steps; ++step) {
      QTest::mouseClick(&view(row.button), Qt::LeftButton);
      EXPECT_FALSE(session().runState().controls().isAlive(row.control)) << "until then";
      ASSERT_TRUE(waitForResult()) << step;
      EXPECT_EQ(view<QLabel>("txtZoomLevel").text(),
                QStringLiteral("%1 %").arg(100 + row.percent * step));
    }
    const QString label = view<QLabel>("txtZoomLevel").text();
    click(row.button);
    EXPECT_TRUE(screen().preview().isResultShown());
    EXPECT_EQ(view<QLabel>("txtZoomLevel").text(), label);
    EXPECT_EQ(view<PictureView>("imgPreviewPhoto").frame().width, row.width);
    EXPECT_EQ(view<ActionButton>(row.button).state(), 1);
  }
  // The next photo begins at 100 %, and so do the buttons.
  session().updateSelectedImageToBeFilteredWithPath(photo());
  EXPECT_EQ(view<ActionButton>("btnZoomOut").state(), 0);
  EXPECT_EQ(view<QLabel>("txtZoomLevel").text(), "100 %");
  ASSERT_TRUE(waitForResult());
}

TEST_F(PreviewTest, AnotherPhotoOverAnOpenOneShowsTheRing) {
  auto& main = view<FileDraggingView>("vwMainContainer");
  auto& ring = view<DraggingView>("vwDragging");
  QMimeData data;
  data.setUrls({QUrl::fromLocalFile(QString::fromStdString(photo("another.png")))});
  ASSERT_TRUE(openAndWait(photo()));
  ASSERT_TRUE(waitUntil([&] { return ring.isVisible(); }));
  QDragEnterEvent enter({300, 300}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(&main, &enter);
  EXPECT_TRUE(enter.isAccepted());
  EXPECT_FALSE(main.isHighlighted());
  EXPECT_TRUE(ring.isVisible() && ring.isHighlighted());
  EXPECT_EQ(ring.geometry(), main.rect());
  // It lets the picture through, and the mouse, and lies over the captions.
  const QImage shown = main.grab().toImage();
  EXPECT_EQ(shown.copy(100, 100, 50, 50),
            view("vwImageContainer").grab().toImage().copy(100, 100, 50, 50));
  EXPECT_EQ(shown.pixelColor(main.width() / 4, main.height() - 2), style::kFocusRing);
  EXPECT_NE(main.childAt(300, 300), &ring);
  QDragLeaveEvent leave;
  QApplication::sendEvent(&main, &leave);
  EXPECT_FALSE(ring.isHighlighted());
}

TEST_F(PreviewTest, OfThreeDroppedPhotosTheFirstIsOpenedAndTheLastWaits) {
  QMimeData data;
  QList<QUrl> urls;
  for (const char* name : {"1.png", "2.png", "3.png"}) {
    urls.push_back(QUrl::fromLocalFile(QString::fromStdString(photo(name))));
  }
  data.setUrls(urls);
  auto& target = view("vwDragging");
  QDragEnterEvent enter({300, 300}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(&target, &enter);
  QDropEvent drop({300, 300}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(&target, &drop);
  ASSERT_TRUE(waitForResult());
  EXPECT_EQ(session().selectedImageFile()->fileName, "1.png");
  EXPECT_EQ(view<QLabel>("lblSaveChangeHeader").text(),
            "Do you want to save the changes made to the document \"1.png\" ?");
  click("btnDontSaveChanges");
  EXPECT_EQ(session().selectedImageFile()->fileName, "3.png");
  EXPECT_FALSE(view("windowSaveChanges").isVisible());
  ASSERT_TRUE(waitForResult());
}

TEST_F(PreviewTest, DeepShowsAt100PercentWhatIsSaved) {
  runProgram({"convert", photo(), "-seed", "1", "-attenuate", "2", "+noise", "Gaussian",
              folder.file("noisy.png")});
  ASSERT_TRUE(openAndWait(folder.file("noisy.png")));
  click("btn100Percent");
  ASSERT_TRUE(waitForResult());
  EXPECT_TRUE(view("lblNoise").isVisible());
  EXPECT_THAT(view("vwNoiseGauge").accessibleDescription().toStdString(),
              testing::HasSubstr("dB. It asks for"));
  const int runs = engine.runs();
  QTest::keyClick(&window(), Qt::Key_D);
  EXPECT_TRUE(view("progressBar").isVisible());
  ASSERT_TRUE(waitForResult());
  EXPECT_FALSE(view("lblNoise").isVisible());
  EXPECT_EQ(view<ActionButton>("btnDeepMode").state(), 1);
  EXPECT_EQ(view<QLabel>("txtCustomDenoiseVal").text(), QStringLiteral("Noise × 1.0"));
  EXPECT_EQ(view("vwNoiseGauge").toolTip(), "The noise asks for 5 of 10, 5 is chosen");
  EXPECT_EQ(engine.runs(), runs);
  panels.saveOptions.clear();
  click("btnExport");
  panels.answerSave(folder.file("out.png"));
  ASSERT_TRUE(waitUntil([this] { return session().state() == EditState::kSaved; }));
  ASSERT_TRUE(waitForResult());
  const QImage saved =
      QImage(QString::fromStdString(folder.file("out.png"))).convertToFormat(QImage::Format_RGB32);
  EXPECT_TRUE(waitUntil([&] {
    const PixelRect seen = view<PictureView>("imgFilteredImgVWRightForDual").frame();
    const QImage shown = view("vwImageContainerForDualMode").grab().toImage();
    return shown.copy(seen.x, seen.y, saved.width(), saved.height())
               .convertToFormat(QImage::Format_RGB32) == saved;
  }));
  click("btnDeepMode");
  ASSERT_TRUE(waitForRun(runs));
}

TEST_F(PreviewTest, WhatWasTakenLiesOverThePictureWhereItWasTaken) {
  const auto caption = [this] { return view<QLabel>("lblAfterFull").text(); };
  auto& shown = view<PictureView>("imgFilteredImgVWRight");
  const QString seen = QStringLiteral("Removed Noise × 8");
  const auto isResidual = [&] {
    const Image region = regionSeen();
    const Bitmap expected = residual(region.bitmap(), filtered(region).bitmap());
    const QImage grabbed = shown.grab().toImage().convertToFormat(QImage::Format_RGB888);
    const PixelRect place = shown.frame();
    const int x = std::max(0, -place.x), y = std::max(0, -place.y);
    const QColor pixel = grabbed.pixelColor(place.x + x + 20, place.y + y + 30);
    const auto* sample = expected.pixel(x + 20, y + 30);
    return caption() == seen && view("vwDenoisedPreview").isVisible() &&
           pixel == QColor(sample[0], sample[1], sample[2]);
  };
  ASSERT_TRUE(openAndWait(photo()));
  for (const char* before : {"btnDualMode", "btnSplitMode", "btnSingleMode"}) {
    click(before);
    ASSERT_TRUE(waitForResult()) << before;
    QTest::keyClick(&window(), Qt::Key_4);
    EXPECT_TRUE(waitUntil([&] { return caption() == seen && waitForResult(); })) << before;
    EXPECT_TRUE(isResidual()) << before;
    EXPECT_EQ(view<ActionButton>("btnNoiseMode").state(), 1);
    EXPECT_EQ(view<ActionButton>("btnSingleMode").state(), 0);
  }
  for (const char* size : {"btn200Percent", "btn100Percent"}) {
    click(size);
    ASSERT_TRUE(waitUntil([&] { return caption() == seen; })) << size;
    EXPECT_TRUE(isResidual()) << size;
  }
  const int runs = engine.runs();
  screen().changeLevel(3);
  ASSERT_TRUE(waitForRun(runs));
  EXPECT_TRUE(isResidual());
  QTest::keyPress(&view("vwPreviewContainer"), Qt::Key_Space);
  EXPECT_EQ(caption(), "Before");
  QTest::keyRelease(&view("vwPreviewContainer"), Qt::Key_Space);
  EXPECT_TRUE(waitUntil([&] { return caption() == seen; }));
  QTest::keyClick(&window(), Qt::Key_1);
  ASSERT_TRUE(waitUntil([&] { return caption() == "After"; }));
  EXPECT_FALSE(isResidual());
}

// The run needs no file.
TEST_F(PreviewTest, APreviewNeedsNoDisk) {
  const std::string path = temporary.file("photo.png");
  ASSERT_TRUE(openAndWait(photo()));
  ASSERT_TRUE(waitUntil(isGlobalQueueIdle));
  EXPECT_EQ(session().selectedImageFileToProccessing()->filePath, path);
  const auto region = readImage(path);
  ASSERT_TRUE(region);
  EXPECT_EQ(region->bitmap().width(), session().selectedImageFileToProccessing()->width);
  EXPECT_EQ(region->bitmap().height(), session().selectedImageFileToProccessing()->height);

  std::filesystem::create_symlink("/dev/full", path + ".part");
  click("btn100Percent");
  ASSERT_TRUE(waitForResult());
  ASSERT_TRUE(waitUntil(isGlobalQueueIdle));
  EXPECT_FALSE(std::filesystem::is_symlink(path + ".part"));
  EXPECT_EQ(std::ranges::count(log(), path + ": the visible region was not written"), 1);
  EXPECT_TRUE(alerts.shown.empty());
}

}  // namespace
}  // namespace velmara
