#pragma once

#include <cstdint>

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

}  // namespace velmara
