// Where the window, the halves of the preview and the line of split style stand.
#include <gtest/gtest.h>

#include <cmath>

#include "preview/geometry_printing.h"
#include "preview/pictures.h"
#include "preview/scaled_picture.h"
#include "preview/split_line.h"
#include "preview/viewport.h"
#include "preview/window_geometry.h"

namespace velmara {
namespace {

TEST(LayoutTest, TheWindowTakesNineTenthsButNeverLessThanItsMinimum) {
  struct Case {
    Size screen;
    Rect frame;
  };
  const Case cases[] = {
      {{1920, 1080}, {96, 54, 1728, 972}},
      {{1280, 1000}, {64, 50, 1220, 900}},        // only the width at its minimum
      {{1024, 600}, {51.2F, 30, 1220, 700}},      // a screen smaller than the window
      {{1921, 700}, {96.05F, 35, 1728.9F, 700}},  // sizes are single precision
  };
  for (const Case& c : cases) {
    const MainWindowGeometry window = mainWindowGeometry(c.screen);
    EXPECT_NEAR(window.frame.x, c.frame.x, 1e-3);
    EXPECT_NEAR(window.frame.y, c.frame.y, 1e-3);
    EXPECT_EQ(Size({window.frame.width, window.frame.height}),
              Size({c.frame.width, c.frame.height}));
    EXPECT_EQ(window.minimumSize, (Size{1220, 700}));
    EXPECT_EQ(window.maximumSize, c.screen);
  }
  EXPECT_EQ(previewContainerFrame({1220, 560}, 34), (Rect{0, 0, 1220, 527})) << "overlaps by one";
  for (const auto style : {PreviewStyle::kSingle, PreviewStyle::kSplit}) {
    const Rect all{0, 0, 1001, 600};
    EXPECT_EQ(containerFrames(style, {1001, 600}), (ContainerFrames{all, all}));
  }
  EXPECT_EQ(containerFrames(PreviewStyle::kDual, {1000, 600}),
            (ContainerFrames{{0, 0, 500, 600}, {500, 0, 500, 600}}));
  const auto odd = containerFrames(PreviewStyle::kDual, {1001, 600});
  EXPECT_EQ(odd.vwImageContainer.width, odd.vwImageContainerForDualMode.width);
  EXPECT_EQ(odd.vwImageContainerForDualMode.x, 500);
}

TEST(LayoutTest, TheLineIsPlacedOverThePictureAndRestored) {
  struct Case {
    double pictureWidth;
    float percent;
    SplitViewPlacement expected;
  };
  const Case cases[] = {
      {400, 0.0F, {{300, 0, 400, 600}, 50.0F, 200.0F}},  // unset
      {400, 25.0F, {{300, 0, 400, 600}, 25.0F, 100.0F}},
      {400, 95.0F, {{300, 0, 400, 600}, 90.0F, 360.0F}},
      {400, 89.5F, {{300, 0, 400, 600}, 89.5F, 358.0F}},
      {401, 50.0F, {{299.5, 0, 401, 600}, 50.0F, 200.5F}},
      {5000, 10.0F, {{0, 0, 1000, 600}, 10.0F, 100.0F}},  // wider than its container
  };
  for (const Case& c : cases) {
    EXPECT_EQ(splitViewPlacement(c.pictureWidth, {1000, 600}, c.percent), c.expected)
        << c.pictureWidth << " at " << c.percent;
  }
  for (const double width : {3.0, 77.0, 1219.0}) {
    const auto percent = dividerPercent(width / 3.0, width);
    ASSERT_TRUE(percent);
    EXPECT_NEAR(splitViewPlacement(width, {1220, 600}, *percent).dividerPosition, width / 3, 1e-3);
  }
  EXPECT_FALSE(dividerPercent(10.0, 0.0));
}

TEST(LayoutTest, TheLineCutsTheOriginalOnAWholePixelOfTheResult) {
  struct Case {
    const char* what;
    PixelRect result;
    double position, crop;
    int before;
  };
  const Case cases[] = {
      {"in the middle", {100, 50, 300, 200}, 120, 120, 120},
      {"at the edge", {100, 50, 300, 200}, 0, 1, 1},
      {"left of the edge", {100, 50, 300, 200}, -4, 1, 1},
      {"between pixels", {100, 50, 300, 200}, 12.4, 12.4, 12},
      {"in the first half pixel", {100, 50, 300, 200}, 0.3, 0.3, 1},  // only 0 and less count as 1
      {"beyond the picture", {100, 50, 300, 200}, 400, 400, 300},
      {"half of the hidden 200 on top", {-100, 50, 700, 200}, 50, 150, 150},
      {"at the edge of what is seen", {-100, 50, 700, 200}, 0, 101, 101},
  };
  for (const Case& c : cases) {
    EXPECT_NEAR(cropX(c.position, c.result.width, 500), c.crop, 1e-3) << c.what;
    PixelRect expected = c.result;
    expected.width = c.before;
    EXPECT_EQ(beforePart(c.result, c.position, 500), expected) << c.what;
  }
}

// Where a column of the photo stands in the container is known from its colour: at every zoom the
// cut ends where the line is, over the same share of the picture.
TEST(LayoutTest, TheLineStaysOverTheSameColumnAtEveryZoom) {
  const PicturePyramid pyramid(columnPicture(240, 80));
  std::optional<Viewport> view = Viewport{};
  view->flag_current_Preview_Size = PreviewSize::kActualSize;
  view->photo = {240, 80};
  view->actualPreviewSize = {300, 151};
  for (; view && view->currentZooomFactor < 1.25F; view = view->zoomedIn()) {
    SCOPED_TRACE(view->currentZooomFactor);
    view = view->rescaled();
    const ScaledPicture shown(pyramid,
                              {view->rectPreviewPhoto.width, view->rectPreviewPhoto.height});
    const auto line = splitViewPlacement(shown.width(), view->container(), 37.5F);
    const PixelRect before = beforePart(view->painted(), double{line.dividerPosition}, 300);
    const double lineInContainer = std::floor(line.frame.x) + double{line.dividerPosition};
    EXPECT_NEAR(before.x + before.width, lineInContainer, 0.5);
    const int columnLeftOfLine =
        shown.render({0, 20, before.width, 1}).pixel(before.width - 1, 0)[1];
    EXPECT_NEAR(columnLeftOfLine + 0.5, 240 * 0.375, 1.5 / double{view->currentZooomFactor});
  }
}

}  // namespace
}  // namespace velmara
