#include "preview/region_cut.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <ostream>
#include <random>

#include "preview/geometry_printing.h"
#include "preview/pan.h"
#include "preview/picture_size.h"
#include "preview/preview_geometry.h"

namespace velmara {

void PrintTo(const RegionCut& cut, std::ostream* out) {
  *out << "case " << static_cast<int>(cut.which) << ", " << testing::PrintToString(cut.rect) << ", "
       << testing::PrintToString(cut.pixels);
}

namespace {

constexpr Size kContainer{1000, 600};

TEST(RegionCutTest, FollowsItsFourCases) {
  struct Case {
    Rect picture;
    RegionCut expected;
  };
  const Case cases[] = {
      {{-400, -100, 2000, 1200},
       {RegionCase::kBothOverflow, {400, 100, 1000, 600}, {400, 500, 1000, 600}}},
      {{100, -100, 800, 1200},
       {RegionCase::kHeightOverflows, {0, 100, 800, 600}, {0, 500, 800, 600}}},
      {{-400, 50, 2000, 500},
       {RegionCase::kWidthOverflows, {400, 0, 1000, 500}, {400, 0, 1000, 500}}},
      {{100, 50, 800, 500}, {RegionCase::kWholePicture, {0, 0, 800, 500}, {0, 0, 800, 500}}},
      {{0, 0, 1000, 600}, {RegionCase::kWholePicture, {0, 0, 1000, 600}, {0, 0, 1000, 600}}},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(regionCut(c.picture, kContainer), c.expected) << testing::PrintToString(c.picture);
  }
}

TEST(RegionCutTest, LogsTheTextOfItsCase) {
  EXPECT_EQ(logLineOf(RegionCase::kBothOverflow), "widthFactor >1.0 && heightFactor > 1.0 !!");
  EXPECT_EQ(logLineOf(RegionCase::kHeightOverflows), "heightFactor > 1.0!!");
  EXPECT_EQ(logLineOf(RegionCase::kWidthOverflows), "widthFactor > 1.0!!");
  EXPECT_EQ(logLineOf(RegionCase::kWholePicture), "Else in Cropp Visible rect> 1.0!!");
}

TEST(RegionCutTest, TheFileIsNamedAfterThePhoto) {
  EXPECT_EQ(regionFilePath("/tmp/private/", "a photo.JPG"), "/tmp/private/a photo.JPG");
  EXPECT_EQ(regionFilePath("/tmp/private", "a.png"), "/tmp/private/a.png");
}

// For any photo, container, size, factor and drag: the region is what the container shows of the
// painted picture, no pixel more or less.
TEST(RegionCutTest, IsExactlyTheWindowOntoThePaintedPicture) {
  std::mt19937 random(11);
  const auto between = [&](int low, int high) {
    return std::uniform_int_distribution<int>(low, high)(random);
  };
  const Size oddPhotos[] = {{1, 1}, {20000, 3}, {3, 20000}, {1, 4000}, {611, 350}};
  for (int round = 0; round < 2000; ++round) {
    Size photo{double(between(1, 7000)), double(between(1, 5000))};
    if (round % 4 == 0) photo = oddPhotos[static_cast<std::size_t>(round / 4) % 5];
    const Size container{double(between(1, 1400)), double(between(1, 900))};
    const auto size = static_cast<PreviewSize>(between(0, 2));
    const float factor = static_cast<float>(between(5, 20)) / 10.0F;
    const Size picture = wholePixels(pictureForZoomFactor(size, photo, container, factor));
    Rect frame = centredRect(picture, container);
    Point last{0, 0};
    for (int drag = 0; drag < 3; ++drag) {
      const Point pointer{double(between(-900, 900)), double(between(-900, 900))};
      const PanStep step = panStep(frame, container, last, pointer);
      frame = step.frame;
      last = step.lastDragLocation;
    }

    const PixelRect painted = paintedRect(frame, container);
    const int left = std::max(0, painted.x);
    const int top = std::max(0, painted.y);
    const int right = std::min(static_cast<int>(container.width), painted.x + painted.width);
    const int bottom = std::min(static_cast<int>(container.height), painted.y + painted.height);
    const PixelRect seen{left - painted.x, top - painted.y, right - left, bottom - top};
    ASSERT_EQ(regionCut(frame, container).pixels, seen)
        << testing::PrintToString(frame) << " in " << testing::PrintToString(container);
    if (size == PreviewSize::kFitToScreen && factor == 1.0F) {
      ASSERT_EQ(regionCut(frame, container).which, RegionCase::kWholePicture);
    }
  }
}

}  // namespace
}  // namespace velmara
