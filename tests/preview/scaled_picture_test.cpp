// A photo on its way to the screen: decoded, at any size, in pieces of the screen's colours.
#include "preview/scaled_picture.h"

#include <gtest/gtest.h>

#include <QColorSpace>
#include <QPainter>

#include <cmath>
#include <random>
#include <vector>

#include "base/pixel_operations.h"
#include "imaging/picture_files.h"
#include "imaging/resample.h"
#include "preview/geometry_printing.h"
#include "preview/pictures.h"
#include "preview/shown_photo.h"
#include "preview/views/screen_tiles.h"

namespace velmara {
namespace {

using Samples = std::vector<std::uint8_t>;

TEST(HalvedTest, TakesTheMeanOfFourAndLetsOddEndsStand) {
  struct Case {
    Samples samples;
    int width, height, samplesPerPixel;
    Samples expected;
  };
  const Case cases[] = {{{10, 20, 30, 40}, 2, 2, 1, {25}},
                        {{0, 0, 0, 1}, 2, 2, 1, {0}},
                        {{0, 0, 1, 1}, 2, 2, 1, {1}},  // halves upwards
                        {{10, 20, 99, 30, 40, 101}, 3, 2, 1, {25, 100}},
                        {{10, 20, 99}, 3, 1, 1, {15, 99}},
                        {{7}, 1, 1, 1, {7}},
                        {{1, 2, 3, 5, 6, 7}, 2, 1, 3, {3, 4, 5}},
                        {{1, 2, 3, 5, 6, 7}, 1, 2, 3, {3, 4, 5}}};
  for (const Case& c : cases) {
    const Bitmap half = halved(Bitmap::copyOf(c.samples, c.width, c.height, c.samplesPerPixel));
    EXPECT_EQ(Samples(half.bytes().begin(), half.bytes().end()), c.expected);
  }
}

TEST(PicturePyramidTest, HalvesUntilItIsSmallAndKeepsAlphaOnlyWhereItLetsSomethingThrough) {
  const PicturePyramid pyramid(texturedPicture(1100, 40));
  ASSERT_EQ(pyramid.levelCount(), 4U);  // 1100, 550, 275, 138
  struct Case {
    int width, height, level;
  };
  const Case cases[] = {{2200, 80, 1100}, {1100, 40, 1100}, {550, 20, 1100}, {275, 10, 550},
                        {276, 10, 1100},  {100, 11, 1100},  {60, 2, 138},    {1, 1, 138}};
  for (const Case& c : cases) {
    EXPECT_EQ(pyramid.levelFor(c.width, c.height).width(), c.level) << c.width << " x " << c.height;
  }
  Samples samples(2400, 255);
  const PicturePyramid opaque(Bitmap::copyOf(samples, 600, 1, 4));
  EXPECT_EQ(opaque.picture().samplesPerPixel(), 3);
  EXPECT_GT(opaque.levelCount(), 1U);
  samples[3] = 128;
  const PicturePyramid transparent(Bitmap::copyOf(samples, 600, 1, 4));
  EXPECT_EQ(transparent.picture().samplesPerPixel(), 4);
  EXPECT_EQ(transparent.levelCount(), 1U);
}

ScaledPicture scaled(const Bitmap& picture, double width, double height) {
  return ScaledPicture(PicturePyramid(picture), {width, height});
}

TEST(ScaledPictureTest, EnlargingAndReducingAreThoseOfTheToolkit) {
  for (const int samples : {1, 3, 4}) {
    const Bitmap picture = texturedPicture(61, 47, samples);
    EXPECT_TRUE(samePixels(scaled(picture, 61, 47).render({0, 0, 61, 47}), asRgba(picture)))
        << "at its own size it is the picture";
    for (const Size size : {Size{122, 94}, Size{110.00001, 70.4}, Size{60, 33}, Size{1, 200}}) {
      const ScaledPicture shown = scaled(picture, size.width, size.height);
      const Bitmap whole = shown.render({0, 0, shown.width(), shown.height()});
      EXPECT_TRUE(samePixels(whole, resampled(picture, shown.width(), shown.height())))
          << testing::PrintToString(size) << ", " << samples << " samples";
    }
  }
}

// Much smaller views come from a smaller level, which takes a few hundredths of the finest waves'
// height away and nothing else.
TEST(ScaledPictureTest, StrongReductionsLookTheSame) {
  const Bitmap picture = texturedPicture(1500, 1100);
  for (const double factor : {0.05, 0.11, 0.2, 0.33}) {
    const ScaledPicture shown = scaled(picture, 1500 * factor, 1100 * factor);
    const Bitmap whole = shown.render({0, 0, shown.width(), shown.height()});
    EXPECT_LT(meanDifference(whole, resampled(picture, shown.width(), shown.height())), 3.0)
        << factor;
  }
}

TEST(ScaledPictureTest, AnyPartIsTheCropOfTheWhole) {
  std::mt19937 random(3);
  const auto between = [&](int low, int high) {
    return std::uniform_int_distribution<int>(low, high)(random);
  };
  const Size odd[] = {{1, 1}, {20000, 3}, {3, 5000}, {1, 700}, {701, 1}};
  for (int round = 0; round < 60; ++round) {
    Size photo{double(between(1, 600)), double(between(1, 400))};
    if (round % 4 == 0) photo = odd[static_cast<std::size_t>(round / 4) % 5];
    const int samples = between(1, 4);
    const PicturePyramid pyramid(
        texturedPicture(static_cast<int>(photo.width), static_cast<int>(photo.height), samples));
    const double factor = between(2, 20) / 10.0 / (round % 3 == 0 ? 7.0 : 1.0);
    const ScaledPicture shown(pyramid, {photo.width * factor, photo.height * factor});
    const Bitmap whole = shown.render({0, 0, shown.width(), shown.height()});
    ASSERT_TRUE(whole.isValid());
    for (int part = 0; part < 6; ++part) {
      const PixelRect rect{between(-5, shown.width() - 1), between(-5, shown.height() - 1),
                           between(1, shown.width()), between(1, shown.height())};
      const Bitmap rendered = shown.render(rect);
      const Bitmap cut = copiedPixels(whole, rect);
      ASSERT_EQ(rendered.isValid(), cut.isValid());
      ASSERT_TRUE(!cut.isValid() || samePixels(rendered, cut))
          << testing::PrintToString(rect) << " of " << testing::PrintToString(photo) << " times "
          << factor << ", " << samples << " samples";
    }
  }
}

// Two thousand million pixels, none of them made but those asked for.
TEST(ScaledPictureTest, MayBeLargerThanAnyBitmap) {
  const ScaledPicture shown = scaled(columnPicture(4000, 2000), 64000, 32000);
  ASSERT_FALSE(isAllowedBitmapSize(shown.width(), shown.height(), 4));
  const Bitmap corner = shown.render({63900, 31900, 500, 500});
  ASSERT_EQ(corner.width(), 100);
  ASSERT_EQ(corner.height(), 100);
  EXPECT_EQ(corner.pixel(99, 99)[0], 3999 / 256);
  EXPECT_NEAR(corner.pixel(99, 99)[1], 3999 % 256, 2);

  EXPECT_FALSE(ScaledPicture().isValid());
  EXPECT_FALSE(scaled(Bitmap(), 10, 10).isValid());
  EXPECT_FALSE(scaled(texturedPicture(4, 4), 1e300, 10).isValid());
  EXPECT_FALSE(scaled(texturedPicture(4, 4), std::nan(""), 10).isValid());
  EXPECT_FALSE(scaled(texturedPicture(4, 4), 8, 8).render({8, 0, 3, 3}).isValid());
  EXPECT_FALSE(scaled(texturedPicture(4, 4), 8, 8).render({0, 0, 0, 3}).isValid());
}

ScaledPicture pictureOf(int width, int height) {
  return ScaledPicture(PicturePyramid(texturedPicture(300, 200)), {double(width), double(height)});
}

/// What a view of a part would show, put together from the tiles.
QImage painted(ScreenTiles& tiles, const PixelRect& visible) {
  QImage canvas(visible.width, visible.height, QImage::Format_RGB32);
  canvas.fill(Qt::black);
  QPainter painter(&canvas);
  for (const ScreenTile& tile : tiles.imagesOver(visible)) {
    EXPECT_LE(tile.image.height(), ScreenTiles::kTileSide);
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

// A photo is decoded once: what is shown are its own pixels, unless something is done to them.
TEST(ShownPhotoTest, SharesThePixelsWhereNothingIsDoneToThem) {
  struct Case {
    const char* name;
    std::vector<std::string> options;
    bool shares;
    int orientation = 0;
  };
  const Case cases[] = {
      {"plain.jpg", {}, true},
      {"upright.jpg", {}, true, 1},
      {"turned.jpg", {}, false, 6},
      {"mirrored.jpg", {}, false, 2},
      {"gray.jpg", {"-colorspace", "Gray", "-type", "Grayscale"}, true},
      {"clear.png", {"-alpha", "set", "-channel", "A", "-evaluate", "set", "50%"}, false}};
  const testing_support::ScratchFolder folder;
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    const std::string path = folder.file(c.name);
    std::vector<std::string> arguments{"-seed",  "5", "-size", "160x120",  "plasma:red-blue",
                                       "-depth", "8", "-type", "TrueColor"};
    arguments.insert(arguments.end(), c.options.begin(), c.options.end());
    ASSERT_TRUE(testing_support::convert(arguments, path));
    if (c.orientation != 0) {
      const std::string tag = "-Orientation=" + std::to_string(c.orientation);
      ASSERT_TRUE(testing_support::runTool({"exiftool", "-n", tag, path}).ok);
    }
    auto opened = openPhoto(path);
    ASSERT_TRUE(opened);
    const auto photo = loadPixels(*opened);
    ASSERT_TRUE(photo);
    const ShownPhoto shown = shownPhoto(*photo);
    ASSERT_TRUE(shown.picture.isValid());
    const Bitmap& picture = shown.picture.picture();
    EXPECT_EQ(picture.bytes().data() == photo->image.bitmap().bytes().data(), c.shares);
    EXPECT_EQ(picture.width(), c.orientation == 6 ? 120 : 160);
    EXPECT_EQ(picture.samplesPerPixel() % 2, 1) << "no alpha";
    EXPECT_EQ(shown.profile, photo->image.profile());
  }
}

}  // namespace
}  // namespace velmara
