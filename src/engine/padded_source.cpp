#include "engine/padded_source.h"

#include "base/mirror.h"
#include "engine/alpha_rows.h"

namespace velmara {

Bitmap paddedSource(const Bitmap& bitmap, int border) {
  if (!bitmap.isValid() || bitmap.samplesPerPixel() != 4) {
    return withMirroredBorder(bitmap, border);
  }
  const auto width = static_cast<std::size_t>(bitmap.width());
  return withMirroredBorder(
      bitmap.width(), bitmap.height(), 3, border,
      [&](int y, std::uint8_t* out) { dropAlpha(bitmap.row(y), width, out); });
}

}  // namespace velmara
