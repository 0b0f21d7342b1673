#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "base/bitmap.h"
#include "imaging/lanczos.h"

namespace velmara {

/// Whether no pixel lets anything through.
bool isOpaque(const Bitmap& bitmap);

/// Draws rows of a resampled canvas, or of a part of one, from a bitmap. The rows and columns are
/// those the taps are of; every pixel depends on its own taps alone, so a part has the samples of
/// the whole. Only the columns of the source that the taps reach are looked at.
///
/// Source and taps must outlive it. It has a line of its own to work in, so every thread needs one.
class RowDrawer {
 public:
  /// `weighAlpha` says that colours are to be weighed by their alpha, which a bitmap that is opaque
  /// throughout does not need.
  RowDrawer(const Bitmap& source, const AxisTaps& across, const AxisTaps& down, bool weighAlpha);

  /// Row y of the taps, 4 samples a pixel.
  void draw(int y, std::uint8_t* out);

 private:
  void gather(int y);
  void addWeighed(const std::uint8_t* from, float weight);
  void put(const float* pixel, float coverage, std::uint8_t* out) const;

  const Bitmap& source_;
  const AxisTaps& across_;
  const AxisTaps& down_;
  std::size_t samples_;
  bool weighAlpha_;
  /// The first column of the source that is looked at.
  int left_;
  /// Samples of the source line that are looked at; the line has a few more.
  std::size_t reached_;
  std::vector<float> line_;
};

}  // namespace velmara
