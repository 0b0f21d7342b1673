#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <optional>

#include "base/bitmap.h"
#include "base/pixel_operations.h"
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

/// A bitmap without its alpha in a mirrored frame, one of 4 samples as 3; one of 2 keeps both. It
/// is made as its rows are wanted, by whoever wants them. Any thread.
class PaddedSource {
 public:
  /// `awaitRows` waits until so many of the bitmap's rows, from the first, may be read; false if
  /// they will not come. Empty: all are there.
  ///
  /// The toolkit's steps write their lines in the order of the request: the removal of the
  /// picture's alpha, of the canvas's, the border, the removal of the framed picture's alpha, the
  /// removals for 4 samples only. Null if the bitmap is not valid, the memory is not to be had or
  /// the frame is too large.
  static std::unique_ptr<PaddedSource> make(const Bitmap& bitmap, int border,
                                            std::function<bool(int rows)> awaitRows,
                                            const LogSink& log);

  /// All samples of the frame, as far as they are made, and its rows.
  std::span<const std::uint8_t> bytes() { return frame_.bytes(); }
  int rowCount() const { return frame_.rowCount(); }
  /// Makes the rows up to `end`; false if they cannot be had.
  bool fillTo(int end);

 private:
  PaddedSource(MirroredFrame frame, std::function<bool(int)> awaitRows);

  std::mutex mutex_;
  MirroredFrame frame_;
  std::function<bool(int)> awaitRows_;
};

/// What one request works with from its padded input to its result.
struct DenoiseRequest {
  /// Sizes and windows.
  FilterGeometry geometry;
  std::unique_ptr<PaddedSource> padded;  ///< Holds sourceBytes.
  PackedRgbCanvas canvas;                ///< Holds destBytes.
  /// What the kernel reads and writes.
  FilterBuffers buffers;

  /// A request whose result goes into a canvas.
  explicit DenoiseRequest(PackedRgbCanvas rgb) : canvas(std::move(rgb)) {}
};

/// Sets up the padding of a bitmap for its windows, makes the canvas, black where the kernel writes
/// nothing, and builds the weight table. Null if the memory is not to be had or the padded picture
/// would be larger than a bitmap may be.
///
/// destBytes are the first bytes of a packed colour canvas whatever the channels, as the result is
/// built from three bytes a pixel: a one-channel output fills the first third of them.
std::unique_ptr<DenoiseRequest> prepareRequest(const Bitmap& bitmap, int templateWinSize,
                                               int searchWinSize, double sigma,
                                               std::function<bool(int rows)> awaitRows,
                                               const LogSink& log);

}  // namespace velmara
