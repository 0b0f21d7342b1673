// Opening a photo and comparing it with its result in the three styles.
#include <gtest/gtest.h>

#include <QImage>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "e2e/desktop_test.h"
#include "support/run_program.h"

namespace velmara::e2e {
namespace {

using testing_support::runProgram;

class OpeningTest : public DesktopTest {
 protected:
  /// How many dark pixels there are: letters on a light bar.
  static int ink(const QImage& bar) {
    int dark = 0;
    for (int y = 0; y < bar.height(); ++y) {
      for (int x = 0; x < bar.width(); ++x) {
        if (qGray(bar.pixel(x, y)) < 110) ++dark;
      }
    }
    return dark;
  }
};

TEST_F(OpeningTest, APhotoOpenedByTheKeyboardIsShownNoisyAndClean) {
  const std::string path = photo();
  const ExpectedPhoto expected(path);
  openInDual(path, expected);

  // The scaled original is a good one, by another program's measure.
  const QSize size = fittedSize(expected.upright().size(), program().leftHalf().size());
  const std::string scaled = folder.file("scaled.png");
  runProgram({"convert", path, "-filter", "Lanczos", "-resize",
              std::to_string(size.width()) + "x" + std::to_string(size.height()) + "!", scaled});
  const QRect part(QPoint(), size);
  EXPECT_LT(meanDifference(expected.original(size, part), QImage(QString::fromStdString(scaled))),
            1.0);
  EXPECT_GT(meanDifference(expected.original(size, part),
                           expected.denoised(expected.original(size, part), 1.0F)),
            2.0);

  const QRect captions = program().captions();
  const QRect left(captions.topLeft(), QSize(captions.width() / 2, captions.height()));
  EXPECT_GT(ink(program().seen(left)), 40);
  EXPECT_GT(ink(program().seen(left.translated(left.width(), 0))), 40);
}

TEST_F(OpeningTest, APhotoStoredOnItsSideIsShownUpright) {
  const std::string path = folder.file("on its side.JPG");
  std::filesystem::copy_file(kHarbour, path);
  const ExpectedPhoto expected(path);
  ASSERT_GT(expected.upright().height(), expected.upright().width());
  openInDual(path, expected);
}

TEST_F(OpeningTest, TheLineOfSplitStyleUncoversTheResultWhereItStands) {
  const std::string path = photo();
  const ExpectedPhoto expected(path);
  openInDual(path, expected);
  const QSize fitted = fittedSize(expected.upright().size(), program().previewArea().size());

  program().click("btnSingleMode");
  ASSERT_TRUE(shows(singleScene(expected, fitted, 1.0F), "single"));

  program().click("btnSplitMode");
  ASSERT_TRUE(waitUntil([&] { return lineAt().has_value(); }));
  const QRect area = program().previewArea();
  const int middle = *lineAt();
  EXPECT_LE(std::abs(middle - area.width() / 2), 3);
  ASSERT_TRUE(shows(splitScene(expected, fitted, 1.0F, middle), "split in the middle"));

  for (const int distance : {-150, 260, -400}) {
    const int from = *lineAt();
    const QPoint grip(area.left() + from + 3, area.center().y());
    display().dragTo(grip, grip + QPoint(distance, 0));
    display().release();
    ASSERT_TRUE(waitUntil([&] { return lineAt() == from + distance; }))
        << "from " << from << " by " << distance << " to " << lineAt().value_or(-1);
    ASSERT_TRUE(shows(splitScene(expected, fitted, 1.0F, from + distance), "split moved"));
  }

  // A larger picture keeps the column under the line, as long as all of its columns are seen.
  const double column = 1.0 * (*lineAt() - placeIn(area.size(), fitted).x()) / fitted.width();
  program().click("btnZoomIn");
  const QSize larger = fittedSize(expected.upright().size(), area.size(), double{1.1F});
  ASSERT_LT(larger.width(), area.width());
  const int line = placeIn(area.size(), larger).x() + qRound(column * larger.width());
  ASSERT_TRUE(waitUntil([&] { return std::abs(lineAt().value_or(-9) - line) <= 1; }))
      << lineAt().value_or(-1) << " instead of " << line;
  EXPECT_TRUE(shows(splitScene(expected, larger, 1.1F, *lineAt()), "split at 110 %"));
}

/// The program with the reference kernel, whose runs last.
class SlowRunTest : public OpeningTest {
 protected:
  void SetUp() override {
    ::setenv("VELMARA_ENGINE", "reference", 1);
    OpeningTest::SetUp();
    ::unsetenv("VELMARA_ENGINE");
  }
};

TEST_F(SlowRunTest, ButtonsPressedDuringARunAreRefusedAndTheRunEnds) {
  const std::string path = folder.file("large.ppm");
  runProgram({"convert", "-size", "2700x2100", "tile:" + photo(), path});
  ASSERT_TRUE(program().openByKeyboard(path));
  ASSERT_TRUE(program().waitForLog("Setting Up Preview Images After Denoising Completion !!"));
  // Without a result both halves are alike but for the line between them.
  const QRect left = program().leftHalf().adjusted(scale(), 0, 0, 0);
  const QRect right = program().rightHalf().adjusted(scale(), 0, 0, 0);
  ASSERT_TRUE(waitUntil([&] { return program().seen(left) != program().seen(right); }));
  const int runs = program().timesLogged("Denoising Started");
  const QRect area = program().previewArea();
  const QImage before = program().seen(area);
  std::vector<QPoint> buttons;
  for (const char* button :
       {"btnSingleMode", "btnSplitMode", "btn100Percent", "btn200Percent", "btnFitScreen",
        "btnZoomIn", "btnZoomOut", "btnAutoMode", "sliderCustomDenoise", "btnAddPhoto", "btnExport",
        "btnMinimizeWindow", "btnZoomWindow", "btnCloseWindow"}) {
    buttons.push_back(program().middleOf(button));
  }

  // The whole photo takes longer than the few pixels that are seen of it.
  ASSERT_TRUE(program().saveByKeyboard(folder.file("result.bmp")));
  ASSERT_TRUE(program().waitForLog("Denoising Started", runs + 1));
  display().clickAll(buttons);
  display().keys({"1", "2", "ctrl+1", "ctrl+2", "ctrl+plus", "ctrl+minus", "a", "Prior"});
  ASSERT_EQ(program().timesLogged("Denoising Done !!"), runs) << "the run was over too soon";

  ASSERT_TRUE(waitUntil([&] { return std::filesystem::exists(folder.file("result.bmp")); }));
  EXPECT_TRUE(waitUntil([&] { return program().seen(area) == before; }));
  EXPECT_EQ(program().timesLogged("Denoising Started"), runs + 1);
  // And everything is alive again.
  program().click("btnSingleMode");
  EXPECT_TRUE(program().waitForLog("Denoising Started", runs + 2));
}

}  // namespace
}  // namespace velmara::e2e
