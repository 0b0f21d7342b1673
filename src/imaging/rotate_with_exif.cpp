#include "imaging/rotate_with_exif.h"

#include <algorithm>
#include <cstddef>
#include <initializer_list>
#include <utility>

#include "base/pixel_operations.h"

namespace velmara {
namespace {

/// Where the upright picture's pixels come from: pixel (x, y) is at byte
/// start + x * alongX + y * alongY of the stored one.
struct Walk {
  std::ptrdiff_t start = 0;
  std::ptrdiff_t alongX = 0;
  std::ptrdiff_t alongY = 0;
};

// Each orientation is a mirroring of one axis, the other, both or none, and from 5 on an exchange
// of the two.
Walk walkFor(const Bitmap& bitmap, int orientation) {
  const bool fromRight = orientation == 2 || orientation == 3 || orientation >= 7;
  const bool fromBottom =
      orientation == 3 || orientation == 4 || orientation == 6 || orientation == 7;
  const std::ptrdiff_t pixel = bitmap.samplesPerPixel();
  const auto row = static_cast<std::ptrdiff_t>(bitmap.rowBytes());
  Walk walk{0, fromRight ? -pixel : pixel, fromBottom ? -row : row};
  if (fromRight) walk.start += (bitmap.width() - 1) * pixel;
  if (fromBottom) walk.start += (bitmap.height() - 1) * row;
  if (exchangesSides(orientation)) std::swap(walk.alongX, walk.alongY);
  return walk;
}

Image mirrored(const Image& image, int orientation) {
  const Bitmap canvas = RotateWithEXIF(asRgba(image.bitmap()), orientation);
  if (!canvas.isValid()) return {};
  return Image({canvas}, image.size(), image.profile());
}

}  // namespace

Bitmap RotateWithEXIF(const Bitmap& bitmap, int orientation) {
  if (!bitmap.isValid() || !isTurnedBy(orientation)) return bitmap;
  const bool turned = exchangesSides(orientation);
  auto upright =
      BitmapBuilder::allocate(turned ? bitmap.height() : bitmap.width(),
                              turned ? bitmap.width() : bitmap.height(), bitmap.samplesPerPixel());
  if (!upright) return {};
  const Walk walk = walkFor(bitmap, orientation);
  const auto samples = static_cast<std::size_t>(bitmap.samplesPerPixel());
  const std::uint8_t* stored = bitmap.bytes().data();
  // In squares, since a turned picture walks down the columns of the stored one.
  constexpr int kSquare = 64;
  for (int top = 0; top < upright->height(); top += kSquare) {
    const int bottom = std::min(top + kSquare, upright->height());
    for (int left = 0; left < upright->width(); left += kSquare) {
      const int right = std::min(left + kSquare, upright->width());
      for (int y = top; y < bottom; ++y) {
        std::uint8_t* out = upright->row(y) + static_cast<std::size_t>(left) * samples;
        const std::uint8_t* in = stored + walk.start + y * walk.alongY + left * walk.alongX;
        for (int x = left; x < right; ++x, in += walk.alongX, out += samples) {
          for (std::size_t c = 0; c < samples; ++c) out[c] = in[c];
        }
      }
    }
  }
  return std::move(*upright).finish();
}

PixelRect storedRect(const PixelRect& upright, int orientation, int width, int height) {
  PixelRect stored = upright;
  if (exchangesSides(orientation)) stored = {upright.y, upright.x, upright.height, upright.width};
  const auto isOneOf = [orientation](std::initializer_list<int> list) {
    return std::ranges::find(list, orientation) != list.end();
  };
  if (isOneOf({2, 3, 7, 8})) stored.x = width - stored.x - stored.width;
  if (isOneOf({3, 4, 6, 7})) stored.y = height - stored.y - stored.height;
  return stored;
}

Image flipImageHorizontally(const Image& image) {
  return mirrored(image, 2);
}

Image flipImageVertically(const Image& image) {
  return mirrored(image, 4);
}

}  // namespace velmara
