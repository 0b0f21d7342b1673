#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace velmara {

/// The sizes a filter call works with. The padded source has a frame of sr + tr pixels on each
/// side: source pixel (x, y) stands at (x + sr + tr, y + sr + tr) of it.
struct FilterGeometry {
  int templateWinSize = 0;  ///< Side t of the patches that are compared.
  int searchWinSize = 0;    ///< Side s of the window whose pixels are candidates.
  std::int64_t D = 0;       ///< Number of candidates, s * s.
  int sr = 0;               ///< Search radius, s / 2.
  double tdiv = 0.0;        ///< 1 / (t * t), unbounded for t = 0.
  int tr = 0;               ///< Template radius, t / 2.
  std::int64_t H = 0;       ///< The candidate that stands in when every weight is zero.
  /// The output; its channels are those of the padded source.
  int widthDest = 0, heightDest = 0, channelsDest = 0;
  int widthIm = 0, heightIm = 0, channelsIm = 0;  ///< The padded source.
  /// The picture without its frame.
  int widthSrc = 0, heightSrc = 0, channelsSrc = 0;

  /// Bytes of one row of the padded source.
  std::int64_t sourceStride() const { return std::int64_t{channelsIm} * widthIm; }
  /// Bytes from one row of a patch to the next. One-channel pictures advance as if a pixel had
  /// three bytes, so their patches are sheared to the left, reference and candidate alike.
  std::int64_t patchRowStep() const {
    return sourceStride() - (channelsSrc == 1 ? 2 * std::int64_t{templateWinSize} : 0);
  }
  /// Bytes from one row of averaged pixels to the next, sheared alike for one channel.
  std::int64_t averageRowStep() const {
    return sourceStride() - (channelsSrc == 1 ? 2 * std::int64_t{searchWinSize} : 0);
  }
};

/// The geometry of a request: a width x height picture of some channels, padded for its windows
/// (t, s >= 0, t <= s). Nothing overflows as long as the padded picture is within
/// Bitmap::kMaxPixels.
FilterGeometry geometryOfRequest(int width, int height, int channels, int templateWinSize,
                                 int searchWinSize);

/// Pixels of frame that the windows need on each side of the picture.
std::int64_t borderOfWindows(int templateWinSize, int searchWinSize);

/// Whether the kernel filters this geometry at all: one or three channels throughout, a
/// destination and a padded source of fitting sizes. Everything else is left as it is.
bool isFilterable(const FilterGeometry& geometry);

/// Rows from `begin` up to, but not including, `end`.
struct RowRange {
  /// In rows of the output, from the top.
  int begin = 0;
  int end = 0;
};

/// The rows of band `counter` of `totalThreads` bands; none if there are fewer rows than bands.
RowRange rowsOfBand(int height, int counter, int totalThreads);

/// The weight of a candidate pixel by the distance of its patch, as non-local means defines it
/// (A. Buades, B. Coll, J.-M. Morel, "Non-Local Means Denoising", Image Processing On Line 1, 2011,
/// equation for the weights): exp(-max(d - 2 sigma^2, 0) / (c sigma^2)), where d is the mean over
/// the patch of the squared differences summed over the c channels.
struct WeightTable {
  /// The weight of distance i, channels * 65536 entries; 0.0 from cutOff on.
  std::vector<double> entries;
  /// The first distance whose weight is zero: weights under 0.001 count for nothing.
  std::int64_t cutOff = 0;
  /// The terms of the formula: weight = exp(max(0, i - offset) * coefficient).
  double offset = 0.0;
  double coefficient = 0.0;
};

/// The table for a filter strength; 0 channels give an empty one. With sigma 0 only identical
/// patches count. The last entry is zero even if nothing before it fell below the limit. Throws
/// std::bad_alloc.
WeightTable buildWeightTable(double sigma, int channels);

/// The weight of a distance; 0.0 for one outside the table.
inline double weightOf(std::span<const double> table, std::int32_t distance) {
  const auto index = static_cast<std::size_t>(static_cast<std::uint32_t>(distance));
  return distance >= 0 && index < table.size() ? table[index] : 0.0;
}

}  // namespace velmara
