#include "preview/views/screen_tiles.h"

#include <gtest/gtest.h>

#include <QColorSpace>
#include <QPainter>

#include "preview/geometry_printing.h"
#include "preview/pictures.h"

namespace velmara {
namespace {

ScaledPicture pictureOf(int width, int height) {
  return ScaledPicture(PicturePyramid(texturedPicture(300, 200)), {double(width), double(height)});
}

/// What a view of a part would show, put together from the tiles.
QImage painted(ScreenTiles& tiles, const PixelRect& visible) {
  QImage canvas(visible.width, visible.height, QImage::Format_RGB32);
  canvas.fill(Qt::black);
  QPainter painter(&canvas);
  for (const ScreenTile& tile : tiles.imagesOver(visible)) {
    painter.drawImage(tile.place - QPoint(visible.x, visible.y), tile.image);
  }
  return canvas;
}

// Whatever way the picture is dragged, back and aslant and into corners that were seen before.
TEST(ScreenTilesTest, ShowExactlyThePicture) {
  const ScaledPicture picture = pictureOf(1300, 900);
  ScreenTiles tiles(picture, {});
  for (const PixelRect visible :
       {PixelRect{0, 0, 640, 480}, PixelRect{255, 255, 2, 2}, PixelRect{1299, 899, 1, 1},
        PixelRect{300, 300, 200, 150}, PixelRect{120, 310, 200, 150}, PixelRect{290, 130, 200, 150},
        PixelRect{700, 500, 600, 400}, PixelRect{250, 250, 420, 330}, PixelRect{0, 0, 1300, 900}}) {
    EXPECT_EQ(painted(tiles, visible), ScreenColors().imageFor(picture.render(visible)))
        << testing::PrintToString(visible);
  }
  EXPECT_TRUE(tiles.imagesOver({1300, 0, 50, 50}).empty());
  EXPECT_TRUE(ScreenTiles({}, {}).imagesOver({0, 0, 50, 50}).empty());
}

TEST(ScreenTilesTest, DraggingRendersOnlyWhatComesIntoSight) {
  ScreenTiles tiles(pictureOf(4000, 3000), {});
  const qint64 first = tiles.imagesOver({100, 100, 800, 600}).front().image.cacheKey();
  const qsizetype before = tiles.kilobytesHeld();
  EXPECT_EQ(tiles.imagesOver({90, 105, 800, 600}).front().image.cacheKey(), first)
      << "the same image, not made again";
  EXPECT_EQ(tiles.kilobytesHeld(), before);
  tiles.imagesOver({230, 100, 800, 600});
  EXPECT_EQ(tiles.kilobytesHeld(), before + 6 * 128 * 128 * 4 / 1024) << "one column more";
}

TEST(ScreenTilesTest, ForgetWhatWasSeenLongAgoButNotWhatIsInSight) {
  ScreenTiles tiles(pictureOf(9000, 6000), {});
  const qint64 first = tiles.imagesOver({0, 0, 700, 500}).front().image.cacheKey();
  for (int x = 0; x < 6500; x += 1600) tiles.imagesOver({x, x / 2, 2500, 2000});
  EXPECT_LE(tiles.kilobytesHeld(), ScreenTiles::kKeptKilobytes);
  EXPECT_NE(tiles.imagesOver({0, 0, 700, 500}).front().image.cacheKey(), first);
  // A window larger than what is kept still has all its tiles, and has them the next time.
  const auto large = tiles.imagesOver({0, 0, 5120, 3840});
  EXPECT_EQ(large.size(), 40U * 30U);
  tiles.imagesOver({0, 0, 100, 100});
  EXPECT_EQ(tiles.imagesOver({0, 0, 5120, 3840}).back().image.cacheKey(),
            large.back().image.cacheKey());
}

TEST(ScreenTilesTest, AProfilesColoursComeOutAsTheScreens) {
  const QByteArray icc = QColorSpace(QColorSpace::AdobeRgb).iccProfile();
  const auto profile = std::make_shared<const std::vector<std::uint8_t>>(icc.begin(), icc.end());
  const std::uint8_t green[] = {60, 200, 60};
  const Bitmap pixel = Bitmap::copyOf(green, 1, 1, 3);
  EXPECT_EQ(ScreenColors().imageFor(pixel).pixelColor(0, 0), QColor(60, 200, 60));
  // Beyond what sRGB can show.
  EXPECT_EQ(ScreenColors(profile).imageFor(pixel).pixelColor(0, 0).red(), 0);
  const auto broken = std::make_shared<const std::vector<std::uint8_t>>(40, std::uint8_t{7});
  EXPECT_EQ(ScreenColors(broken).imageFor(pixel).pixelColor(0, 0), QColor(60, 200, 60));
  EXPECT_TRUE(ScreenColors().imageFor({}).isNull());
}

}  // namespace
}  // namespace velmara
