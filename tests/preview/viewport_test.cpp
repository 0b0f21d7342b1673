#include "preview/viewport.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

#include "preview/geometry_printing.h"

namespace velmara {
namespace {

constexpr auto kActual = PreviewSize::kActualSize;
constexpr auto kFit = PreviewSize::kFitToScreen;
constexpr auto kDouble = PreviewSize::kDoubleSize;
constexpr Size kContainer{1000, 600};

Viewport viewOf(Size photo, Size container, PreviewSize size = kFit, float factor = 1.0F) {
  Viewport view;
  view.flag_current_Preview_Size = size;
  view.currentZooomFactor = factor;
  view.photo = photo;
  view.actualPreviewSize = container;
  return view.rescaled();
}

// A view of a picture that stands there.
Viewport viewOf(Rect picture) {
  Viewport view = viewOf({picture.width, picture.height}, kContainer, kActual);
  view.rectPreviewPhoto = picture;
  return view;
}

TEST(ViewportTest, SizesAndFactorsScaleThePictureInTheMiddle) {
  struct Case {
    PreviewSize size;
    float factor;
    Size photo, container;
    Rect expected;
  };
  const auto unknown = static_cast<PreviewSize>(7);
  const Case cases[] = {
      {kActual, 1.0F, {6000, 4000}, kContainer, {-2500, -1700, 6000, 4000}},
      {kActual, 0.5F, {6000, 4000}, kContainer, {-1000, -700, 3000, 2000}},
      {kDouble, 2.0F, {600, 400}, kContainer, {-100, -100, 1200, 800}},
      {kDouble, 1.5F, {600, 400}, kContainer, {50, 0, 900, 600}},  // of the photo, not its double
      {kFit, 1.0F, {6000, 4000}, kContainer, {50, 0, 900, 600}},   // the height limits
      {kFit, 1.0F, {6000, 2000}, kContainer, {0, 133.5, 1000, 333}},  // the width limits
      {kFit, 1.0F, {3000, 9000}, kContainer, {400, 0, 200, 600}},
      {kFit, 1.0F, {10, 10}, {500, 600}, {0, 50, 500, 500}},  // enlarged
      {kFit, 1.0F, {20000, 3}, kContainer, {0, 299.5, 1000, 1}},
      {kFit, 1.5F, {6000, 4000}, kContainer, {-175, -150, 1350, 900}},
      {kFit, 0.5F, {6000, 2000}, kContainer, {250, 216.5, 500, 167}},
      {kFit, 2.0F, {1, 20000}, kContainer, {499.5, -300, 1, 1200}},
      {unknown, 0.5F, {600, 400}, kContainer, {350, 200, 300, 200}}};
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::PrintToString(c.photo) + " in " + testing::PrintToString(c.container));
    const Viewport view = viewOf(c.photo, c.container, c.size, c.factor);
    EXPECT_EQ(view.rectPreviewPhoto, c.expected);
    // A size button has its own factor.
    const Viewport pressed = viewOf(c.photo, c.container, kFit, 0.7F).withSize(c.size);
    EXPECT_EQ(pressed.flag_current_Preview_Size, c.size);
    const float factor = c.size == kDouble ? 2.0F : c.size == unknown ? 0.7F : 1.0F;
    EXPECT_EQ(pressed.currentZooomFactor, factor);
    const float scale = c.size == unknown ? 1.0F : factor;
    EXPECT_EQ(pressed.rectPreviewPhoto,
              viewOf(c.photo, c.container, c.size, scale).rectPreviewPhoto);
  }
}

// The ratio of 1000 / 3 in 300 is not a single-precision number: the height shows its rounding.
TEST(ViewportTest, RatiosAreSinglePrecision) {
  const Size fitted = pictureForZoomFactor(kFit, {1000, 500}, {300, 300}, 1.0F);
  EXPECT_EQ(fitted, (Size{300.0, 500.0 / double{1000.0F / 300.0F}}));
  EXPECT_NE(fitted.height, 150.0);
}

TEST(ViewportTest, ContainersAreMeasuredInDevicePixels) {
  Viewport view = viewOf({100, 100}, {611, 350});
  view.devicePixelRatio = 1.25;
  EXPECT_EQ(view.container(), (Size{764, 438}));
  EXPECT_EQ(view.rescaled().rectPreviewPhoto, (Rect{163, 0, 438, 438}));
}

TEST(ViewportTest, ZoomStepsReachTheirEndsWithTheirRounding) {
  const auto walk = [](std::optional<Viewport> (Viewport::*step)() const, float& end) {
    std::string labels;
    Viewport view;
    for (auto next = (view.*step)(); next && labels.size() < 200; next = (view.*step)()) {
      view = *next;
      labels += zoomLabel(view.currentZooomFactor) + ",";
    }
    end = view.currentZooomFactor;
    return labels;
  };
  float end = 0.0F;
  EXPECT_EQ(walk(&Viewport::zoomedIn, end),
            "110 %,120 %,130 %,140 %,150 %,160 %,170 %,180 %,190 %,200 %,");
  EXPECT_EQ(end, 2.0000002F);
  EXPECT_EQ(walk(&Viewport::zoomedOut, end), "90 %,80 %,70 %,60 %,50 %,");
  EXPECT_LT(end, 0.5F);
  // What the size buttons set ends exactly, so it stops the steps as well.
  Viewport view;
  view.currentZooomFactor = 2.0F;
  EXPECT_FALSE(view.zoomedIn());
  EXPECT_TRUE(view.zoomedOut());
  view.currentZooomFactor = 0.5F;
  EXPECT_FALSE(view.zoomedOut());
}

TEST(ViewportTest, AnAnchorKeepsThePlaceUnderThePointerAsFarAsThePictureCovers) {
  struct Case {
    const char* name;
    Point pointer;  // y down
    Rect before;
    Size picture;
    Rect expected;
  };
  const Case cases[] = {
      {"middle", {500, 300}, {-500, -300, 2000, 1200}, {4000, 2400}, {-1500, -900, 4000, 2400}},
      {"corner", {0, 600}, {-500, -300, 2000, 1200}, {4000, 2400}, {-1000, -600, 4000, 2400}},
      {"one side only", {250, 300}, {0, 200, 1000, 200}, {2000, 400}, {-250, 100, 2000, 400}},
      {"smaller again", {900, 500}, {-1500, -900, 4000, 2400}, {900, 500}, {50, 50, 900, 500}},
      {"clamped", {999, 0}, {-1000, -600, 2000, 1200}, {1500, 900}, {-500, -300, 1500, 900}},
      {"beside it", {10, 300}, {400, 200, 200, 200}, {1200, 1200}, {0, -300, 1200, 1200}},
      {"no picture yet", {10, 300}, {}, {1200, 500}, {-100, 50, 1200, 500}},
      {"right half of dual",
       {1500, 300},
       {-500, -300, 2000, 1200},
       {4000, 2400},
       {-1500, -900, 4000, 2400}}};
  for (const Case& c : cases) {
    Viewport view = viewOf(c.before);
    view.photo = c.picture;
    EXPECT_EQ(view.rescaled(c.pointer).rectPreviewPhoto, c.expected) << c.name;
    // The same on a screen of twice the pixels.
    view.actualPreviewSize = {500, 300};
    view.devicePixelRatio = 2.0;
    EXPECT_EQ(view.rescaled(Point{c.pointer.x / 2, c.pointer.y / 2}).rectPreviewPhoto, c.expected)
        << c.name;
  }
}

TEST(ViewportTest, DraggingMovesOverflowingSidesAndDropsWhatWouldUncoverAnEdge) {
  struct Case {
    const char* what;
    Rect picture;
    Point to;  // y down
    bool isTaken;
    Point origin;
    Point byKeys;  // the same, stopped at the edges
  };
  const Rect both{-500, -300, 2000, 1200};
  const Rect wide{-500, 100, 2000, 400};
  const Rect tall{300, -300, 400, 1200};
  const Case cases[] = {
      {"both sides", both, {30, 40}, true, {-470, -340}, {-470, -340}},
      {"to the very edge", both, {500, 300}, true, {0, -600}, {0, -600}},
      {"left edge uncovered", both, {501, 0}, false, {}, {0, -300}},
      {"right edge uncovered", both, {-501, 0}, false, {}, {-1000, -300}},
      {"bottom edge uncovered drops x too", both, {10, -301}, false, {}, {-490, 0}},
      {"top edge uncovered", both, {10, 301}, false, {}, {-490, -600}},
      {"only the width", wide, {40, 90}, true, {-460, 100}, {-460, 100}},
      {"only the width, uncovered", wide, {-501, 0}, false, {}, {-1000, 100}},
      {"only the height", tall, {40, -90}, true, {300, -210}, {300, -210}},
      {"only the height, uncovered", tall, {0, -301}, false, {}, {300, 0}},
      {"fits", {300, 100, 400, 400}, {5, 5}, false, {}, {300, 100}},
      {"fits exactly", {0, 0, 1000, 600}, {5, 5}, false, {}, {0, 0}},
      // Too little for single precision to tell.
      {"fits nearly", {0, 0, 1000.00001, 600}, {-1, 0}, false, {}, {0, 0}}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    const Viewport view = viewOf(c.picture);
    const auto dragged = view.dragged({7, 9}, {7 + c.to.x, 9 + c.to.y});
    ASSERT_EQ(dragged.has_value(), c.isTaken);
    Rect expected = c.picture;
    expected.x = c.origin.x;
    expected.y = c.origin.y;
    if (dragged) {
      EXPECT_EQ(dragged->rectPreviewPhoto, expected);
    }
    expected.x = c.byKeys.x;
    expected.y = c.byKeys.y;
    EXPECT_EQ(view.movedBy(c.to.x, c.to.y).rectPreviewPhoto, expected);
  }
  Viewport fine = viewOf(both);
  fine.actualPreviewSize = {500, 300};
  fine.devicePixelRatio = 2.0;
  EXPECT_EQ(fine.dragged({0, 0}, {15, 20})->rectPreviewPhoto, (Rect{-470, -340, 2000, 1200}));
  EXPECT_EQ(fine.movedBy(15, 20), *fine.dragged({0, 0}, {15, 20}));
}

TEST(ViewportTest, TheVisibleRegionFollowsItsFourCases) {
  struct Case {
    Rect picture;
    PixelRect seen;
    const char* line;
  };
  const Case cases[] = {
      {{-400, -100, 2000, 1200},
       {400, 500, 1000, 600},
       "widthFactor >1.0 && heightFactor > 1.0 !!"},
      {{100, -100, 800, 1200}, {0, 500, 800, 600}, "heightFactor > 1.0!!"},
      {{-400, 50, 2000, 500}, {400, 0, 1000, 500}, "widthFactor > 1.0!!"},
      {{100, 50, 800, 500}, {0, 0, 800, 500}, "Else in Cropp Visible rect> 1.0!!"},
      {{0, 0, 1000, 600}, {0, 0, 1000, 600}, "Else in Cropp Visible rect> 1.0!!"}};
  for (const Case& c : cases) {
    const Viewport view = viewOf(c.picture);
    EXPECT_EQ(view.seen(), c.seen);
    EXPECT_EQ(logLineOf(view.regionCase()), c.line);
    EXPECT_EQ(view.canPan(), view.regionCase() != RegionCase::kWholePicture);
  }
}

// For any photo, container, size, factor and drag: the picture covers what it can of its container,
// and a result of the visible region, which stands in the middle, lies exactly where the region is
// seen.
TEST(ViewportTest, AResultCoversExactlyWhatIsSeen) {
  std::mt19937 random(11);
  const auto between = [&](int low, int high) {
    return std::uniform_int_distribution<int>(low, high)(random);
  };
  const Size odd[] = {{1, 1}, {20000, 3}, {3, 20000}, {1, 4000}, {611, 350}};
  for (int round = 0; round < 2000; ++round) {
    Size photo{double(between(1, 7000)), double(between(1, 5000))};
    if (round % 4 == 0) photo = odd[static_cast<std::size_t>(round / 4) % 5];
    const Size room{double(between(1, 1400)), double(between(1, 900))};
    Viewport view = viewOf(photo, room, static_cast<PreviewSize>(between(0, 2)),
                           static_cast<float>(between(5, 20)) / 10.0F);
    for (int drag = 0; drag < 3; ++drag) {
      const Point to{double(between(-900, 900)), double(between(-900, 900))};
      view = view.dragged({0, 0}, to).value_or(view);
      if (round % 2 == 0) view = view.movedBy(to.y, to.x);
    }
    SCOPED_TRACE(testing::PrintToString(view.rectPreviewPhoto) + " in " +
                 testing::PrintToString(room));
    const Rect& frame = view.rectPreviewPhoto;
    ASSERT_TRUE(frame.width <= room.width ||
                (frame.x <= 0.0 && frame.x + frame.width >= room.width));
    ASSERT_TRUE(frame.height <= room.height ||
                (frame.y <= 0.0 && frame.y + frame.height >= room.height));
    const PixelRect seen = view.seen();
    const PixelRect result =
        paintedRect(centredRect({double(seen.width), double(seen.height)}, room), room);
    ASSERT_EQ(result, intersection(view.painted(), {0, 0, int(room.width), int(room.height)}));
    if (view.flag_current_Preview_Size == kFit && view.currentZooomFactor == 1.0F) {
      ASSERT_EQ(view.regionCase(), RegionCase::kWholePicture);
    }
  }
}

}  // namespace
}  // namespace velmara
