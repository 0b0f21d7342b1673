#include "preview/tiled_picture.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>

#include "preview/geometry_printing.h"
#include "preview/pictures.h"

namespace velmara {
namespace {

TiledPicture tiled(int width, int height) {
  return TiledPicture(
      ScaledPicture(PicturePyramid(texturedPicture(300, 200)), {double(width), double(height)}));
}

// What a view of this part would show, put together from the tiles.
Bitmap painted(const std::vector<PictureTile>& tiles, const PixelRect& visible) {
  auto canvas = BitmapBuilder::allocate(visible.width, visible.height, 4);
  std::fill(canvas->bytes().begin(), canvas->bytes().end(), std::uint8_t{0});
  for (const PictureTile& tile : tiles) {
    const PixelRect seen = intersection(tile.rect, visible);
    for (int y = seen.y; y < seen.y + seen.height; ++y) {
      std::memcpy(canvas->row(y - visible.y) + std::ptrdiff_t{4} * (seen.x - visible.x),
                  tile.bitmap.pixel(seen.x - tile.rect.x, y - tile.rect.y),
                  static_cast<std::size_t>(seen.width) * 4);
    }
  }
  return std::move(*canvas).finish();
}

TEST(TiledPictureTest, TilesShowExactlyThePicture) {
  TiledPicture picture = tiled(1300, 900);
  for (const PixelRect visible : {PixelRect{0, 0, 640, 480}, PixelRect{255, 255, 2, 2},
                                  PixelRect{700, 500, 600, 400}, PixelRect{1299, 899, 1, 1}}) {
    EXPECT_TRUE(
        samePixels(painted(picture.tilesOver(visible), visible), picture.picture().render(visible)))
        << testing::PrintToString(visible);
  }
}

TEST(TiledPictureTest, DraggingRendersOnlyWhatComesIntoSight) {
  TiledPicture picture = tiled(4000, 3000);
  picture.tilesOver({100, 100, 800, 600});
  const auto storage = picture.tilesOver({100, 100, 800, 600}).front().bitmap.storage();
  const std::size_t before = picture.bytesHeld();
  const auto moved = picture.tilesOver({90, 105, 800, 600});
  EXPECT_EQ(moved.front().bitmap.storage(), storage) << "the same samples, not made again";
  EXPECT_EQ(picture.bytesHeld(), before);
  picture.tilesOver({230, 100, 800, 600});
  EXPECT_EQ(picture.bytesHeld(), before + std::size_t{6} * 128 * 128 * 4) << "one column more";
}

// Whatever way the picture is dragged, back and aslant and into corners that were seen before.
TEST(TiledPictureTest, DraggingAboutAlwaysShowsThePicture) {
  TiledPicture picture = tiled(900, 700);
  const PixelRect views[] = {{300, 300, 200, 150}, {120, 310, 200, 150}, {290, 130, 200, 150},
                             {500, 500, 200, 150}, {250, 250, 420, 330}, {0, 0, 900, 700}};
  for (const PixelRect& visible : views) {
    EXPECT_TRUE(
        samePixels(painted(picture.tilesOver(visible), visible), picture.picture().render(visible)))
        << testing::PrintToString(visible);
  }
}

TEST(TiledPictureTest, ForgetsWhatWasSeenLongAgo) {
  TiledPicture picture = tiled(9000, 6000);
  const auto first = picture.tilesOver({0, 0, 700, 500}).front().bitmap.storage();
  for (int x = 0; x < 8000; x += 300) picture.tilesOver({x, x / 2, 1000, 800});
  EXPECT_LE(picture.bytesHeld(), TiledPicture::kKept);
  EXPECT_NE(picture.tilesOver({0, 0, 700, 500}).front().bitmap.storage(), first);
}

// A window larger than what is kept still gets all its tiles.
TEST(TiledPictureTest, NeverForgetsWhatIsInSight) {
  TiledPicture picture = tiled(9000, 6000);
  EXPECT_EQ(picture.tilesOver({0, 0, 5120, 3840}).size(), 40U * 30U);
  EXPECT_GT(picture.bytesHeld(), TiledPicture::kKept);
  picture.tilesOver({0, 0, 100, 100});
  EXPECT_LE(picture.bytesHeld(), TiledPicture::kKept);
}

TEST(TiledPictureTest, OutsideThereIsNothing) {
  EXPECT_TRUE(tiled(400, 300).tilesOver({400, 0, 50, 50}).empty());
  EXPECT_TRUE(TiledPicture().tilesOver({0, 0, 50, 50}).empty());
}

}  // namespace
}  // namespace velmara
