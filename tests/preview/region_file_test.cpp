#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <random>

#include "imaging/image_reader.h"
#include "imaging/utils.h"
#include "preview/geometry_printing.h"
#include "preview/pan.h"
#include "preview/picture_size.h"
#include "preview/pictures.h"
#include "preview/preview_geometry.h"
#include "preview/region_cut.h"
#include "preview/scaled_picture.h"
#include "preview/split_composition.h"
#include "support/scratch_folder.h"

namespace velmara {
namespace {

struct Canvas {
  int width;
  int height;
  std::vector<std::uint8_t> pixels;

  Canvas(Size size, std::uint8_t ground)
      : width(static_cast<int>(size.width)),
        height(static_cast<int>(size.height)),
        pixels(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 3, ground) {}

  // Paints what lies inside, without alpha.
  void paint(const Bitmap& bitmap, const PixelRect& at) {
    const PixelRect seen = intersection(at, {0, 0, width, height});
    for (int y = seen.y; y < seen.y + seen.height; ++y) {
      for (int x = seen.x; x < seen.x + seen.width; ++x) {
        const std::uint8_t* from = bitmap.pixel(x - at.x, y - at.y);
        const auto place = (static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                            static_cast<std::size_t>(x)) *
                           3;
        for (std::size_t c = 0; c < 3; ++c) {
          pixels[place + c] = from[bitmap.samplesPerPixel() >= 3 ? c : 0];
        }
      }
    }
  }
};

// From the photo to the screen and to the file and back: what is written for the filter is what the
// container shows, and laid over it as a result it covers exactly the same pixels.
TEST(RegionFileTest, HoldsWhatTheContainerShows) {
  const testing_support::ScratchFolder folder;
  std::mt19937 random(23);
  const auto between = [&](int low, int high) {
    return std::uniform_int_distribution<int>(low, high)(random);
  };
  const Size odd[] = {{1, 1}, {20000, 3}, {3, 4000}, {1, 900}, {901, 1}};
  for (int round = 0; round < 60; ++round) {
    Size photo{double(between(1, 900)), double(between(1, 700))};
    if (round % 3 == 0) photo = odd[static_cast<std::size_t>(round / 3) % 5];
    const Size container{double(between(2, 500)), double(between(2, 400))};
    const auto size = static_cast<PreviewSize>(between(0, 2));
    const float factor = static_cast<float>(between(5, 20)) / 10.0F;
    const ScaledPicture shown(PicturePyramid(texturedPicture(static_cast<int>(photo.width),
                                                             static_cast<int>(photo.height))),
                              pictureForZoomFactor(size, photo, container, factor));
    Rect frame = centredRect(shown.size(), container);
    frame =
        panStep(frame, container, {0, 0}, {double(between(-300, 300)), double(between(-300, 300))})
            .frame;

    const PixelRect painted = paintedRect(frame, container);
    Canvas screen(container, 9);
    const PixelRect inSight{-painted.x, -painted.y, screen.width, screen.height};
    const PixelRect clipped = intersection(inSight, {0, 0, painted.width, painted.height});
    screen.paint(shown.render(clipped),
                 {painted.x + clipped.x, painted.y + clipped.y, clipped.width, clipped.height});

    const std::string path = regionFilePath(folder.path().string(), "a photo.JPG");
    Utils::sharedUtils().saveImageInSelectedFormat(
        4, path, shown.render(regionCut(frame, container).pixels));
    const auto region = readImage(path);
    ASSERT_TRUE(region) << region.error();
    const Bitmap& written = region->bitmap();

    const auto composed =
        composeResult(written, written, PreviewStyle::kSplit, double(between(0, 600)), container);
    ASSERT_TRUE(composed);
    Canvas overlaid(container, 9);
    overlaid.paint(composed->result.bitmap, composed->result.rect);
    overlaid.paint(composed->before.bitmap, composed->before.rect);
    ASSERT_TRUE(overlaid.pixels == screen.pixels)
        << testing::PrintToString(photo) << " at " << factor << ", size " << static_cast<int>(size)
        << ": " << testing::PrintToString(frame) << " in " << testing::PrintToString(container);
  }
}

}  // namespace
}  // namespace velmara
