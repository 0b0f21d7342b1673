#include "engine/denoise_request.h"

#include <limits>
#include <new>
#include <utility>

#include "base/mirror.h"

namespace velmara {

std::unique_ptr<DenoiseRequest> prepareRequest(const Bitmap& bitmap, int templateWinSize,
                                               int searchWinSize, double sigma) try {
  const std::int64_t border = borderOfWindows(templateWinSize, searchWinSize);
  const int channels = bitmap.samplesPerPixel();
  if (!isAllowedBitmapSize(bitmap.width() + 2 * border, bitmap.height() + 2 * border, channels)) {
    return nullptr;
  }
  auto canvas = PackedRgbCanvas::allocate(bitmap.width(), bitmap.height());
  if (!canvas) return nullptr;
  auto request = std::make_unique<DenoiseRequest>(std::move(*canvas));
  request->geometry =
      geometryOfRequest(bitmap.width(), bitmap.height(), channels, templateWinSize, searchWinSize);
  request->buffers.weightTable = buildWeightTable(sigma, channels);
  if (isFilterable(request->geometry)) {
    request->padded = withMirroredBorder(bitmap, static_cast<int>(border));
    if (!request->padded.isValid()) return nullptr;
    request->buffers.sourceBytes = request->padded.bytes();
    request->buffers.destBytes = request->canvas.packed().first(bitmap.byteCount());
  }
  return request;
} catch (const std::bad_alloc&) {
  return nullptr;
}

}  // namespace velmara
