#pragma once

#include <memory>
#include <optional>

#include "base/bitmap.h"
#include "base/task_queue.h"
#include "engine/filter_kernel.h"

namespace velmara {

/// A picture whose samples are first written as packed RGB (3 bytes a pixel, no gaps) and then
/// become an opaque 4-sample bitmap in the same memory.
class PackedRgbCanvas {
 public:
  /// A picture whose samples are not set; nothing if the size is not allowed or the memory is not
  /// to be had.
  static std::optional<PackedRgbCanvas> allocate(int width, int height);

  /// The packed bytes, 3 * width * height of them.
  std::span<std::uint8_t> packed();

  /// The opaque bitmap; the canvas is used up.
  Bitmap finish() &&;

 private:
  explicit PackedRgbCanvas(BitmapBuilder rgba);

  BitmapBuilder rgba_;
};

/// What one request works with from its padded input to its result.
struct DenoiseRequest {
  FilterGeometry geometry;
  Bitmap padded;           ///< Holds sourceBytes.
  PackedRgbCanvas canvas;  ///< Holds destBytes.
  FilterBuffers buffers;

  explicit DenoiseRequest(PackedRgbCanvas rgb) : canvas(std::move(rgb)) {}
};

/// The bitmap without its alpha in a mirrored frame, one of 4 samples as 3; one of 2 keeps both.
/// The toolkit's steps write their lines in the order of the request: the removal of the picture's
/// alpha, of the canvas's, the border, the removal of the framed picture's alpha, the removals for
/// 4 samples only. Not valid if the memory is not to be had or the frame is too large.
Bitmap paddedSource(const Bitmap& bitmap, int border, const LogSink& log);

/// Pads a bitmap for its windows, makes the canvas, black where the kernel writes nothing, and
/// builds the weight table. Null if the memory is not to be had or the padded picture would be
/// larger than a bitmap may be.
///
/// destBytes are the first bytes of a packed colour canvas whatever the channels, as the result is
/// built from three bytes a pixel: a one-channel output fills the first third of them.
std::unique_ptr<DenoiseRequest> prepareRequest(const Bitmap& bitmap, int templateWinSize,
                                               int searchWinSize, double sigma, const LogSink& log);

}  // namespace velmara
