#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <span>

#include "base/bitmap.h"
#include "base/task_queue.h"

namespace velmara {

/// A sample drawn over black through an alpha of 0 to 255: sample * alpha / 255, rounded to the
/// nearest.
constexpr std::uint8_t overBlack(std::uint8_t sample, std::uint8_t alpha) {
  const unsigned product = unsigned{sample} * unsigned{alpha} + 128U;
  return static_cast<std::uint8_t>((product + (product >> 8U)) >> 8U);
}

/// The bitmap drawn over black with its alpha sample gone: 4 samples become 3, 2 become 1, and a
/// bitmap without alpha comes back itself. Not valid if the input is not or the memory is not to be
/// had.
Bitmap withoutAlpha(const Bitmap& bitmap);

/// The toolkit's alpha removal: withoutAlpha with its lines in the log.
Bitmap removeAlpha(const Bitmap& bitmap, const LogSink& log);
/// The line it begins with, for whoever removes alpha on the way or finds none to remove.
void logAlphaRemoval(const LogSink& log);

/// Packed RGB (or gray) samples as an opaque 4-sample bitmap; 2 and 4 samples keep their alpha.
Bitmap asRgba(const Bitmap& bitmap);

/// The index in 0..count-1 that position `index` shows when a line of `count` samples is mirrored
/// at both ends again and again, the end samples repeated: -1 shows 0, count shows count - 1.
std::int64_t mirroredIndex(std::int64_t index, std::int64_t count);

/// The bitmap inside a mirrored frame `border` pixels wide on each side, its corners mirrored both
/// ways, with the same samples per pixel. Not valid if the input is not, the border is negative or
/// the memory is not to be had.
Bitmap withMirroredBorder(const Bitmap& bitmap, int border);

/// A picture of which only the rows are known: `writeRow(y, out)` writes width * samples bytes.
struct PictureRows {
  /// In pixels, and samples per pixel.
  int width = 0, height = 0, samples = 0;
  /// Writes the samples of row y.
  std::function<void(int y, std::uint8_t* out)> writeRow;
};
/// Those of a bitmap, which they keep alive.
PictureRows rowsOf(const Bitmap& bitmap);

/// A picture in a mirrored frame, made from the top to the bottom as its rows are wanted.
class MirroredFrame {
 public:
  /// Nothing if the border is negative or the memory is not to be had.
  static std::optional<MirroredFrame> allocate(PictureRows picture, int border);

  /// Makes the frame's rows up to `end`, and asks for the picture's rows that they show.
  void fillTo(int end);
  /// How many rows of the picture, from the first, the frame's rows up to `end` show.
  int pictureRowsUpTo(int end) const;
  /// The frame's samples, those of rows not made yet not set.
  std::span<const std::uint8_t> bytes() { return framed_.bytes(); }
  /// Of the whole frame, made or not.
  int rowCount() const { return framed_.height(); }
  /// The whole frame; it is used up.
  Bitmap finish() &&;

 private:
  MirroredFrame(PictureRows picture, int border, BitmapBuilder framed);

  PictureRows picture_;
  int border_;
  BitmapBuilder framed_;
  int filled_ = 0;
};

/// The lines of the toolkit's border in the log.
void logBorder(int width, int height, const LogSink& log);

}  // namespace velmara
