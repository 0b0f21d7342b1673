#include "preview/split_composition.h"

#include <gtest/gtest.h>

#include <cmath>

#include "base/alpha.h"
#include "imaging/resampled_bitmap.h"
#include "preview/generation_counter.h"
#include "preview/geometry_printing.h"
#include "preview/picture_size.h"
#include "preview/pictures.h"
#include "preview/preview_geometry.h"
#include "preview/region_cut.h"
#include "preview/scaled_picture.h"

namespace velmara {
namespace {

constexpr Size kContainer{500, 301};

TEST(SplitCompositionTest, PlacesTheCutOverTheResult) {
  struct Case {
    const char* what;
    int width, height;
    double position;
    PixelRect before, result;
  };
  const Case cases[] = {
      {"in the middle", 300, 200, 120, {100, 50, 120, 200}, {100, 50, 300, 200}},
      {"fills the container", 500, 301, 77, {0, 0, 77, 301}, {0, 0, 500, 301}},
      {"odd widths", 301, 200, 10, {99, 50, 10, 200}, {99, 50, 301, 200}},
      {"line at the edge", 300, 200, 0, {100, 50, 1, 200}, {100, 50, 300, 200}},
      {"line left of the edge", 300, 200, -4, {100, 50, 1, 200}, {100, 50, 300, 200}},
      {"line between pixels", 300, 200, 12.4, {100, 50, 12, 200}, {100, 50, 300, 200}},
      {"line in the first half pixel", 300, 200, 0.3, {100, 50, 1, 200}, {100, 50, 300, 200}},
      {"line beyond the picture", 300, 200, 400, {100, 50, 300, 200}, {100, 50, 300, 200}},
      {"wider than the container", 700, 200, 50, {-100, 50, 150, 200}, {-100, 50, 700, 200}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    const Bitmap original = columnPicture(c.width, c.height);
    const auto composed = composeSplit(original, asRgba(original), c.position, kContainer);
    ASSERT_TRUE(composed);
    EXPECT_EQ(composed->before.rect, c.before);
    EXPECT_EQ(composed->result.rect, c.result);
    EXPECT_TRUE(samePixels(composed->before.bitmap,
                           copiedPixels(original, {0, 0, c.before.width, c.height})));
  }
}

TEST(SplitCompositionTest, NeedsBothPictures) {
  const Bitmap picture = columnPicture(10, 10);
  EXPECT_FALSE(composeSplit({}, picture, 5, kContainer));
  EXPECT_FALSE(composeSplit(picture, {}, 5, kContainer));
  EXPECT_FALSE(composeResult({}, picture, PreviewStyle::kSingle, 5, kContainer));
}

TEST(NewResultTest, IsBroughtToTheOriginalsSizeOnlyIfItDiffers) {
  const Bitmap original = columnPicture(300, 200);
  const Bitmap same = asRgba(original);
  const auto kept = composeResult(original, same, PreviewStyle::kSplit, 40, kContainer);
  ASSERT_TRUE(kept);
  EXPECT_EQ(kept->result.bitmap.storage(), same.storage()) << "not even copied";
  const auto brought =
      composeResult(original, texturedPicture(150, 100), PreviewStyle::kSplit, 40, kContainer);
  ASSERT_TRUE(brought);
  EXPECT_EQ(brought->result.bitmap.width(), 300);
  EXPECT_EQ(brought->result.rect, (PixelRect{100, 50, 300, 200}));
}

TEST(NewResultTest, DualShowsTheResultAlone) {
  const Bitmap original = columnPicture(300, 200);
  const auto dual = composeResult(original, original, PreviewStyle::kDual, 40, kContainer);
  ASSERT_TRUE(dual);
  EXPECT_FALSE(dual->before.bitmap.isValid());
  EXPECT_EQ(dual->result.rect, (PixelRect{100, 50, 300, 200}));
}

// Where a column of the photo stands in the container is known from its colour: at every zoom the
// cut ends where the line is, over the same share of the picture, and lines up with the picture
// under it.
TEST(SplitCompositionTest, TheLineStaysOverTheSameColumnAtEveryZoom) {
  const Size photo{240, 80};
  const PicturePyramid pyramid(columnPicture(240, 80));
  const Size container{300, 151};
  constexpr float kPercent = 37.5F;
  for (float factor = 0.5F; factor < 1.25F; factor = zoomedIn(factor)) {
    SCOPED_TRACE(factor);
    const ScaledPicture shown(
        pyramid, pictureForZoomFactor(PreviewSize::kActualSize, photo, container, factor));
    const Rect frame = centredRect(shown.size(), container);
    const Bitmap region = shown.render(regionCut(frame, container).pixels);
    const auto line = splitViewPlacement(region.width(), container, kPercent);
    const auto composed = composeSplit(region, region, double{line.dividerPosition}, container);
    ASSERT_TRUE(composed);
    const PlacedPicture& before = composed->before;
    const double lineInContainer = std::floor(line.frame.x) + double{line.dividerPosition};
    EXPECT_NEAR(before.rect.x + before.rect.width, lineInContainer, 0.5);
    EXPECT_EQ(before.rect.x, paintedRect(frame, container).x);
    const int columnLeftOfLine = before.bitmap.pixel(before.rect.width - 1, 20)[1];
    EXPECT_NEAR(columnLeftOfLine + 0.5, 240 * 0.375, 1.5 / double{factor});
  }
}

TEST(GenerationCounterTest, OnlyTheLatestIsCurrent) {
  GenerationCounter regions;
  const auto first = regions.current();
  EXPECT_TRUE(regions.isCurrent(first));
  const auto second = regions.advance();
  EXPECT_FALSE(regions.isCurrent(first));
  EXPECT_TRUE(regions.isCurrent(second));
  EXPECT_EQ(second, regions.current());
}

}  // namespace
}  // namespace velmara
