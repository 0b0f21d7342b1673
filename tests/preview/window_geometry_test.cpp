#include "preview/window_geometry.h"

#include <gtest/gtest.h>

#include "preview/geometry_printing.h"

namespace velmara {
namespace {

void expectNear(Rect got, Rect expected) {
  EXPECT_NEAR(got.x, expected.x, 1e-3);
  EXPECT_NEAR(got.y, expected.y, 1e-3);
  EXPECT_NEAR(got.width, expected.width, 1e-3);
  EXPECT_NEAR(got.height, expected.height, 1e-3);
}

TEST(MainWindowTest, TakesNineTenthsButNeverLessThanItsMinimum) {
  struct Case {
    Size screen;
    Rect frame;
  };
  const Case cases[] = {
      {{1920, 1080}, {96, 54, 1728, 972}},
      {{1280, 1000}, {64, 50, 1220, 900}},   // only the width at its minimum
      {{1024, 600}, {51.2, 30, 1220, 700}},  // a screen smaller than the window
      {{3000, 700}, {150, 35, 2700, 700}},
  };
  for (const Case& c : cases) {
    const MainWindowGeometry window = mainWindowGeometry(c.screen);
    expectNear(window.frame, c.frame);
    EXPECT_EQ(window.minimumSize, (Size{1220, 700}));
    EXPECT_EQ(window.maximumSize, c.screen);
  }
}

TEST(MainWindowTest, SizesAreSinglePrecision) {
  const double width = mainWindowGeometry({1921, 1080}).frame.width;
  EXPECT_EQ(width, double{static_cast<float>(width)});
}

TEST(MainScreenTest, ThePreviewOverlapsTheCaptionsByOnePoint) {
  EXPECT_EQ(previewContainerFrame({1220, 560}, 34), (Rect{0, 0, 1220, 527}));
  EXPECT_EQ(titleBarFrame(1220), (Rect{0, 0, 1220, 70}));
}

TEST(MainScreenTest, DualHalvesThePreviewAndTheOtherStylesFillIt) {
  const Rect all{0, 0, 1001, 600};
  EXPECT_EQ(containerFrames(PreviewStyle::kSingle, {1001, 600}), (ContainerFrames{all, all}));
  EXPECT_EQ(containerFrames(PreviewStyle::kSplit, {1001, 600}), (ContainerFrames{all, all}));
  EXPECT_EQ(containerFrames(PreviewStyle::kDual, {1000, 600}),
            (ContainerFrames{{0, 0, 500, 600}, {500, 0, 500, 600}}));
  const auto odd = containerFrames(PreviewStyle::kDual, {1001, 600});
  EXPECT_EQ(odd.vwImageContainer.width, odd.vwImageContainerForDualMode.width);
  EXPECT_EQ(odd.vwImageContainerForDualMode.x, 500);
}

}  // namespace
}  // namespace velmara
