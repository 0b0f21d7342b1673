#pragma once

#include <cstdint>
#include <functional>

#include "base/bitmap.h"
#include "base/task_queue.h"

namespace velmara {

/// The index in 0..count-1 that position `index` shows when a line of `count` samples is mirrored
/// at both ends again and again, the end samples repeated: -1 shows 0, count shows count - 1.
std::int64_t mirroredIndex(std::int64_t index, std::int64_t count);

/// A picture of which only the rows are known: `writeRow(y, out)` writes width * samples bytes.
struct PictureRows {
  int width = 0, height = 0, samples = 0;
  std::function<void(int y, std::uint8_t* out)> writeRow;
};
PictureRows rowsOf(const Bitmap& bitmap);

/// The toolkit's border, with its lines in the log: the picture, of which each row is asked for
/// once, inside a mirrored frame `border` pixels wide on each side, its corners mirrored both ways,
/// with the same samples per pixel. Not valid if the input is not, the border is negative or the
/// memory is not to be had.
Bitmap addBorder(const PictureRows& picture, int border, const LogSink& log);

}  // namespace velmara
