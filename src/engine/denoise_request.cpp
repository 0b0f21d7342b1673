#include "engine/denoise_request.h"

#include <algorithm>
#include <new>
#include <utility>

#include "engine/padded_source.h"

namespace velmara {

std::unique_ptr<DenoiseRequest> prepareRequest(const Bitmap& bitmap, int templateWinSize,
                                               int searchWinSize, double sigma) try {
  const std::int64_t border = borderOfWindows(templateWinSize, searchWinSize);
  const int channels = std::min(bitmap.samplesPerPixel(), 3);
  if (!isAllowedBitmapSize(bitmap.width() + 2 * border, bitmap.height() + 2 * border, channels)) {
    return nullptr;
  }
  auto canvas = PackedRgbCanvas::allocate(bitmap.width(), bitmap.height());
  if (!canvas) return nullptr;
  auto request = std::make_unique<DenoiseRequest>(std::move(*canvas));
  request->geometry =
      geometryOfRequest(bitmap.width(), bitmap.height(), channels, templateWinSize, searchWinSize);
  request->buffers.weightTable = buildWeightTable(sigma, channels);
  std::span<std::uint8_t> black = request->canvas.packed();
  if (isFilterable(request->geometry)) {
    request->padded = paddedSource(bitmap, static_cast<int>(border));
    if (!request->padded.isValid()) return nullptr;
    request->buffers.sourceBytes = request->padded.bytes();
    // The kernel writes all of these.
    const std::size_t written = black.size() / 3 * static_cast<std::size_t>(channels);
    request->buffers.destBytes = black.first(written);
    black = black.subspan(written);
  }
  std::ranges::fill(black, std::uint8_t{0});
  return request;
} catch (const std::bad_alloc&) {
  return nullptr;
}

}  // namespace velmara
