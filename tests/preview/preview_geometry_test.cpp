#include "preview/preview_geometry.h"

#include <gtest/gtest.h>

#include "preview/geometry_printing.h"

namespace velmara {
namespace {

constexpr auto kSingle = PreviewStyle::kSingle;
constexpr auto kSplit = PreviewStyle::kSplit;
constexpr auto kDual = PreviewStyle::kDual;

TEST(ContainerFramesTest, DualHalvesAndTheOthersFill) {
  const Rect all{0, 0, 1001, 600};
  EXPECT_EQ(containerFrames(kSingle, {1001, 600}), (ContainerFrames{all, all}));
  EXPECT_EQ(containerFrames(kSplit, {1001, 600}), (ContainerFrames{all, all}));
  EXPECT_EQ(containerFrames(kDual, {1000, 600}),
            (ContainerFrames{{0, 0, 500, 600}, {500, 0, 500, 600}}));
  const auto odd = containerFrames(kDual, {1001, 600});
  EXPECT_EQ(odd.vwImageContainer.width, odd.vwImageContainerForDualMode.width);
  EXPECT_EQ(odd.vwImageContainerForDualMode.x, 500);
}

TEST(StyleChangeTest, OnlyDualIsANewLayout) {
  struct Case {
    PreviewStyle current, chosen, style;
    bool hasLayout, showsDual, placesSplitView;
  };
  const auto unknown = static_cast<PreviewStyle>(5);
  const Case cases[] = {
      {kSingle, kSplit, kSplit, false, false, false},
      {kSplit, kSingle, kSingle, false, false, false},
      {kSingle, kDual, kDual, true, true, false},
      {kSplit, kDual, kDual, true, true, false},
      {kDual, kSplit, kSplit, true, false, true},
      {kDual, kSingle, kSingle, true, false, false},
      {kDual, kDual, kDual, false, true, false},
      {kSingle, unknown, kSingle, false, false, false},
  };
  for (const Case& c : cases) {
    const StyleChange change = styleChange(c.current, c.chosen, {1000, 600});
    SCOPED_TRACE(static_cast<int>(c.current) * 10 + static_cast<int>(c.chosen));
    EXPECT_EQ(change.style, c.style);
    EXPECT_EQ(change.layout.has_value(), c.hasLayout);
    EXPECT_EQ(change.layout.value_or(containerFrames(c.chosen, {1000, 600})),
              containerFrames(c.chosen, {1000, 600}));
    EXPECT_EQ(change.isDualContainerShown, c.showsDual);
    EXPECT_EQ(change.placesSplitView, c.placesSplitView);
  }
}

TEST(CentredRectTest, CentresSmallAndLargePictures) {
  EXPECT_EQ(centredRect({300, 200}, {1000, 601}), (Rect{350, 200.5, 300, 200}));
  EXPECT_EQ(centredRect({3000, 200}, {1000, 600}), (Rect{-1000, 200, 3000, 200}));
}

TEST(RectAroundTest, KeepsThePlaceUnderThePointAsFarAsThePictureCovers) {
  struct Case {
    const char* name;
    Point anchor;
    Rect before;
    Size picture;
    Rect expected;
  };
  const Size container{1000, 600};
  const Case cases[] = {
      {"middle", {500, 300}, {-500, -300, 2000, 1200}, {4000, 2400}, {-1500, -900, 4000, 2400}},
      {"corner", {0, 0}, {-500, -300, 2000, 1200}, {4000, 2400}, {-1000, -600, 4000, 2400}},
      {"one side only", {250, 300}, {0, 200, 1000, 200}, {2000, 400}, {-250, 100, 2000, 400}},
      {"smaller again", {900, 100}, {-1500, -900, 4000, 2400}, {900, 500}, {50, 50, 900, 500}},
      {"clamped", {1000, 600}, {-1000, -600, 2000, 1200}, {1500, 900}, {-500, -300, 1500, 900}},
      {"beside it", {10, 300}, {400, 200, 200, 200}, {1200, 1200}, {0, -300, 1200, 1200}},
      {"no picture yet", {10, 300}, {}, {1200, 500}, {-100, 50, 1200, 500}},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(rectAround(c.anchor, c.before, c.picture, container), c.expected) << c.name;
  }
}

TEST(TopDownTest, TurnsTheAxisAndBack) {
  const Rect rect{10, 20, 300, 100};
  EXPECT_EQ(topDown(rect, 600), (Rect{10, 480, 300, 100}));
  EXPECT_EQ(topDown(topDown(rect, 600), 600), rect);
  EXPECT_EQ(topDown(Point{5, 0}, 600), (Point{5, 600}));
}

TEST(DevicePixelsTest, AreWhole) {
  EXPECT_EQ(devicePixels({611, 350}, 1.25), (Size{764, 438}));
  EXPECT_EQ(devicePixels({611, 350}, 2.0), (Size{1222, 700}));
}

TEST(OverflowTest, ComparesInSinglePrecision) {
  const auto factors = [](double w, double h) {
    return overflowFactors({0, 0, w, h}, {1000, 600});
  };
  EXPECT_TRUE(factors(1001, 600).overflowsWidth());
  EXPECT_FALSE(factors(1001, 600).overflowsHeight());
  EXPECT_FALSE(factors(1000, 600).overflows());
  // Too little for single precision to tell from 1.
  EXPECT_FALSE(factors(1000.00001, 600).overflows());
}

TEST(SplitViewTest, IsPlacedOverThePictureAndRestoresTheLine) {
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
      {1000, 10.0F, {{0, 0, 1000, 600}, 10.0F, 100.0F}},
      {5000, 10.0F, {{0, 0, 1000, 600}, 10.0F, 100.0F}},  // wider than its container
  };
  for (const Case& c : cases) {
    EXPECT_EQ(splitViewPlacement(c.pictureWidth, {1000, 600}, c.percent), c.expected)
        << c.pictureWidth << " at " << c.percent;
  }
}

TEST(SplitViewTest, ThePercentageComesBackAsThePosition) {
  for (const double width : {3.0, 77.0, 640.0, 1219.0}) {
    for (const double position : {1.0, width / 3.0, width * 0.8}) {
      const auto percent = dividerPercent(position, width);
      ASSERT_TRUE(percent);
      EXPECT_NEAR(splitViewPlacement(width, {1220, 600}, *percent).dividerPosition, position, 1e-3);
    }
  }
  EXPECT_FALSE(dividerPercent(10.0, 0.0));
}

TEST(CropColumnTest, FollowsTheLine) {
  struct Case {
    double position, result, container, expected;
  };
  const Case cases[] = {
      {200, 400, 1000, 200},  {0, 400, 1000, 1},
      {-5, 400, 1000, 1},     {0.25, 400, 1000, 0.25},  // only 0 and less count as 1
      {200, 1000, 1000, 200}, {200, 2000, 1000, 700},   // half of the hidden 1000 on top
      {0, 1250, 1000, 126},
  };
  for (const Case& c : cases) {
    EXPECT_NEAR(cropX(c.position, c.result, c.container), c.expected, 1e-3)
        << c.position << " of " << c.result << " in " << c.container;
  }
}

}  // namespace
}  // namespace velmara
