#include "preview/scaled_picture.h"

#include <algorithm>
#include <utility>

#include "base/pixel_operations.h"
#include "preview/viewport.h"

namespace velmara {
namespace {

// Smaller levels would save nothing.
constexpr int kSmallestLevel = 256;

// Rounded mean of two by two pixels, the number of samples known to the compiler.
template <std::size_t kSamples>
void halveRow(const std::uint8_t* upper, const std::uint8_t* lower, int pairs, std::uint8_t* out) {
  for (int x = 0; x < pairs; ++x) {
    for (std::size_t c = 0; c < kSamples; ++c) {
      const unsigned sum =
          unsigned{upper[c]} + upper[c + kSamples] + lower[c] + lower[c + kSamples];
      out[c] = static_cast<std::uint8_t>((sum + 2U) / 4U);
    }
    upper += 2 * kSamples;
    lower += 2 * kSamples;
    out += kSamples;
  }
}

auto halveRowOf(int samples) {
  switch (samples) {
    case 1:
      return halveRow<1>;
    case 2:
      return halveRow<2>;
    case 3:
      return halveRow<3>;
    default:
      return halveRow<4>;
  }
}

}  // namespace

PicturePyramid::PicturePyramid(const Bitmap& picture) {
  if (!picture.isValid()) return;
  const bool isOpaquePicture = isOpaque(picture);
  Bitmap base = isOpaquePicture ? withoutAlpha(picture) : picture;
  if (!base.isValid()) base = picture;
  std::vector<Bitmap> levels{std::move(base)};
  while (isOpaquePicture &&
         std::max(levels.back().width(), levels.back().height()) > kSmallestLevel) {
    Bitmap half = halved(levels.back());
    if (!half.isValid()) break;
    levels.push_back(std::move(half));
  }
  levels_ = std::make_shared<const std::vector<Bitmap>>(std::move(levels));
}

const Bitmap& PicturePyramid::levelFor(int width, int height) const {
  const auto suffices = [&](const Bitmap& level) {
    return level.width() / 2 >= width && level.height() / 2 >= height;
  };
  std::size_t index = 0;
  while (index + 1 < levels_->size() && suffices((*levels_)[index + 1])) ++index;
  return (*levels_)[index];
}

Bitmap halved(const Bitmap& bitmap) {
  const int width = (bitmap.width() + 1) / 2;
  const int height = (bitmap.height() + 1) / 2;
  const int samples = bitmap.samplesPerPixel();
  auto half = BitmapBuilder::allocate(width, height, samples);
  if (!half) return {};
  const auto halve = halveRowOf(samples);
  parallelRows(height, [&](int first, int end) {
    for (int y = first; y < end; ++y) {
      const std::uint8_t* upper = bitmap.row(2 * y);
      const std::uint8_t* lower = bitmap.row(std::min(2 * y + 1, bitmap.height() - 1));
      std::uint8_t* out = half->row(y);
      halve(upper, lower, bitmap.width() / 2, out);
      if (bitmap.width() % 2 == 0) continue;
      const auto last = bitmap.rowBytes() - static_cast<std::size_t>(samples);
      for (int c = 0; c < samples; ++c) {
        const auto at = last + static_cast<std::size_t>(c);
        out[static_cast<std::size_t>((width - 1) * samples + c)] =
            static_cast<std::uint8_t>((upper[at] + lower[at] + 1) / 2);
      }
    }
  });
  return std::move(*half).finish();
}

ScaledPicture::ScaledPicture(PicturePyramid picture, Size size) : picture_(std::move(picture)) {
  constexpr double kLongestSide = 1 << 30;
  if (!picture_.isValid() || !(size.width <= kLongestSide && size.height <= kLongestSide)) return;
  const Size whole = wholePixels(size);
  const int width = static_cast<int>(whole.width);
  const int height = static_cast<int>(whole.height);
  view_ = ResampledBitmap(picture_.levelFor(width, height), width, height);
}

}  // namespace velmara
