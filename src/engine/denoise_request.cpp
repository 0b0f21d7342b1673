#include "engine/denoise_request.h"

#include <algorithm>
#include <new>
#include <utility>

#include "base/pixel_operations.h"
#include "engine/row_kernels.h"

namespace velmara {

PackedRgbCanvas::PackedRgbCanvas(BitmapBuilder rgba) : rgba_(std::move(rgba)) {}

std::optional<PackedRgbCanvas> PackedRgbCanvas::allocate(int width, int height) {
  auto rgba = BitmapBuilder::allocate(width, height, 4);
  if (!rgba) return std::nullopt;
  return PackedRgbCanvas(std::move(*rgba));
}

// The packed bytes lie at the end of the memory, so that spreading them from the front to 4 bytes
// a pixel never overwrites one that is still to be read.
std::span<std::uint8_t> PackedRgbCanvas::packed() {
  const std::span<std::uint8_t> all = rgba_.bytes();
  return all.last(all.size() / 4 * 3);
}

Bitmap PackedRgbCanvas::finish() && {
  addAlpha(packed().data(), packed().size() / 3, rgba_.bytes().data());
  return std::move(rgba_).finish();
}

PaddedSource::PaddedSource(MirroredFrame frame, std::function<bool(int)> awaitRows)
    : frame_(std::move(frame)), awaitRows_(std::move(awaitRows)) {}

// The rows lose their alpha on their way into the frame: no copy lies in between. Neither the
// canvas nor what comes of the frame has any alpha left to remove.
std::unique_ptr<PaddedSource> PaddedSource::make(const Bitmap& bitmap, int border,
                                                 std::function<bool(int)> awaitRows,
                                                 const LogSink& log) {
  PictureRows rows = rowsOf(bitmap);
  const bool losesAlpha = bitmap.samplesPerPixel() == 4;
  if (losesAlpha) {
    rows.samples = 3;
    rows.writeRow = [bitmap](int y, std::uint8_t* out) {
      dropAlpha(bitmap.row(y), static_cast<std::size_t>(bitmap.width()), out);
    };
    logAlphaRemoval(log);
    logAlphaRemoval(log);
  }
  logBorder(bitmap.width(), bitmap.height(), log);
  if (losesAlpha) logAlphaRemoval(log);
  auto frame = MirroredFrame::allocate(std::move(rows), border);
  if (!frame) return nullptr;
  return std::unique_ptr<PaddedSource>(new PaddedSource(std::move(*frame), std::move(awaitRows)));
}

bool PaddedSource::fillTo(int end) {
  const std::scoped_lock lock(mutex_);
  if (awaitRows_ && !awaitRows_(frame_.pictureRowsUpTo(end))) return false;
  frame_.fillTo(end);
  return true;
}

std::unique_ptr<DenoiseRequest> prepareRequest(const Bitmap& bitmap, int templateWinSize,
                                               int searchWinSize, double sigma,
                                               std::function<bool(int)> awaitRows,
                                               const LogSink& log) try {
  const std::int64_t border = borderOfWindows(templateWinSize, searchWinSize);
  const int channels = std::min(bitmap.samplesPerPixel(), 3);
  auto canvas = PackedRgbCanvas::allocate(bitmap.width(), bitmap.height());
  if (!canvas) return nullptr;
  auto request = std::make_unique<DenoiseRequest>(std::move(*canvas));
  request->padded = PaddedSource::make(bitmap, static_cast<int>(border), std::move(awaitRows), log);
  if (request->padded == nullptr) return nullptr;
  request->geometry =
      geometryOfRequest(bitmap.width(), bitmap.height(), channels, templateWinSize, searchWinSize);
  request->buffers.sourceBytes = request->padded->bytes();
  request->buffers.weightTable = buildWeightTable(sigma, channels);
  std::span<std::uint8_t> black = request->canvas.packed();
  if (isFilterable(request->geometry)) {
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
