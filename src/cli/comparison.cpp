#include "cli/comparison.h"

#include <algorithm>
#include <cstdint>
#include <utility>

#include "base/pixel_operations.h"

namespace velmara::cli {
namespace {

constexpr std::uint8_t kBlack = 0;
constexpr std::uint8_t kLightGrey = 170;

void copyRgb(const Bitmap& from, int y, int begin, int end, std::uint8_t* row) {
  const int samples = from.samplesPerPixel();
  const bool isColour = samples >= 3;
  for (int x = begin; x < end; ++x) {
    const std::uint8_t* in = from.pixel(x, y);
    const std::uint8_t alpha = from.hasAlpha() ? in[samples - 1] : std::uint8_t{255};
    std::uint8_t* out = row + std::ptrdiff_t{3} * x;
    for (int c = 0; c < 3; ++c) out[c] = overBlack(in[isColour ? c : 0], alpha);
  }
}

}  // namespace

Bitmap sideBySide(const Bitmap& before, const Bitmap& after) {
  if (!before.isValid() || before.width() != after.width() || before.height() != after.height()) {
    return {};
  }
  const int width = before.width();
  auto picture = BitmapBuilder::allocate(width, before.height(), 3);
  if (!picture) return {};

  const int hairline = std::max(1, width / 1000);
  const int half = std::min(2 * hairline, width / 2);
  const int lineBegin = width / 2 - half;
  const int lineEnd = width / 2 + half;
  for (int y = 0; y < before.height(); ++y) {
    std::uint8_t* row = picture->row(y);
    copyRgb(before, y, 0, lineBegin, row);
    for (int x = lineBegin; x < lineEnd; ++x) {
      const bool isBand = x >= lineBegin + hairline && x < lineEnd - hairline;
      std::fill_n(row + std::ptrdiff_t{3} * x, 3, isBand ? kLightGrey : kBlack);
    }
    copyRgb(after, y, lineEnd, width, row);
  }
  return std::move(*picture).finish();
}

}  // namespace velmara::cli
