#include "base/residual.h"

#include <algorithm>
#include <cstdint>
#include <utility>

#include "base/pixel_operations.h"

namespace velmara {

Bitmap residual(const Bitmap& original, const Bitmap& result, int gain) {
  const Bitmap before = withoutAlpha(original);
  const Bitmap after = withoutAlpha(result);
  if (!before.isValid() || !after.isValid() || before.width() != after.width() ||
      before.height() != after.height()) {
    return {};
  }
  const int samples = std::max(before.samplesPerPixel(), after.samplesPerPixel());
  auto picture = BitmapBuilder::allocate(before.width(), before.height(), samples);
  if (!picture) return {};
  // One sample of gray stands for all colours.
  const int stepBefore = before.samplesPerPixel() == samples ? 1 : 0;
  const int stepAfter = after.samplesPerPixel() == samples ? 1 : 0;
  for (int y = 0; y < before.height(); ++y) {
    std::uint8_t* out = picture->row(y);
    for (int x = 0; x < before.width(); ++x) {
      const std::uint8_t* from = before.pixel(x, y);
      const std::uint8_t* to = after.pixel(x, y);
      for (int c = 0; c < samples; ++c, from += stepBefore, to += stepAfter) {
        const std::int64_t enlarged = std::int64_t{gain} * (*from - *to) + kResidualGrey;
        *out++ = static_cast<std::uint8_t>(std::clamp<std::int64_t>(enlarged, 0, 255));
      }
    }
  }
  return std::move(*picture).finish();
}

}  // namespace velmara
