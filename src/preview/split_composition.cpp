#include "preview/split_composition.h"

#include <algorithm>
#include <cmath>

#include "imaging/resample.h"
#include "imaging/resampled_bitmap.h"
#include "preview/preview_geometry.h"
#include "preview/region_cut.h"

namespace velmara {
namespace {

Size sizeOf(const Bitmap& bitmap) {
  return {static_cast<double>(bitmap.width()), static_cast<double>(bitmap.height())};
}

PlacedPicture centred(const Bitmap& bitmap, Size container) {
  const Size size = sizeOf(bitmap);
  return {bitmap, paintedRect(centredRect(size, container), container)};
}

// The original left of the line, at the picture's own place. The line stands on a whole pixel, and
// never so far left that nothing remains.
PlacedPicture beforePart(const Bitmap& original, double resultWidth, double dividerPosition,
                         Size container) {
  PlacedPicture before = centred(original, container);
  const double column = std::round(cropX(dividerPosition, resultWidth, container.width));
  before.rect.width = static_cast<int>(std::clamp(column, 1.0, 1.0 * original.width()));
  before.bitmap = copiedPixels(original, {0, 0, before.rect.width, before.rect.height});
  return before;
}

}  // namespace

std::optional<PreviewComposition> composeSplit(const Bitmap& original, const Bitmap& result,
                                               double dividerPosition, Size container) {
  if (!original.isValid() || !result.isValid()) return std::nullopt;
  PreviewComposition composition;
  composition.before = beforePart(original, result.width(), dividerPosition, container);
  composition.result = centred(result, container);
  if (!composition.before.bitmap.isValid()) return std::nullopt;
  return composition;
}

std::optional<PreviewComposition> composeResult(const Bitmap& original, const Bitmap& result,
                                                PreviewStyle style, double dividerPosition,
                                                Size container) {
  if (!original.isValid() || !result.isValid()) return std::nullopt;
  const bool hasSize = result.width() == original.width() && result.height() == original.height();
  const Bitmap matching = hasSize ? result : resampled(result, original.width(), original.height());
  auto composition = composeSplit(original, matching, dividerPosition, container);
  if (composition && style == PreviewStyle::kDual) composition->before = {};
  return composition;
}

}  // namespace velmara
