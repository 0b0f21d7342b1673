#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "engine/filter_kernel.h"

namespace velmara {

/// One shift of the search window, (dx, dy) from a pixel to its candidate. The distance of two
/// patches is the same seen from either, so one shift serves two candidates: pixel p at p + shift,
/// and pixel p + shift at p, which is its candidate -shift.
struct SearchShift {
  /// Columns and rows.
  int dx = 0, dy = 0;
  bool reversed = false;     ///< Whether -shift is a candidate as well.
  int rows = 1;              ///< Rows of its weights that are kept: dy + 1 if reversed.
  std::size_t firstRow = 0;  ///< Its first row in the scratch's rows of weights.
  /// Rows above a tile whose weights it needs.
  int lead() const { return reversed ? dy : 0; }
  /// The first column, counted from a tile's first pixel, whose distance some pixel of the tile
  /// needs, and how many columns from there on. Rows of distances start with that column.
  int begin() const { return reversed && dx > 0 ? -dx : 0; }
  int length(int tileWidth) const { return tileWidth + (reversed ? (dx < 0 ? -dx : dx) : 0); }
};

/// Where the weight of one candidate comes from.
struct CandidateSlot {
  static constexpr int kSelf = -1;  ///< The pixel itself: distance 0, weight 1.
  /// The index of a shift, or kSelf, and whether it is seen from its other end.
  int shift = kSelf;
  bool reversed = false;
};

/// A weight in single precision: 2^min(0, d * scale + bias) for d < cut, else 0.
struct WeightFunction {
  /// As the formula has them.
  float scale = 0.0F;
  float bias = 0.0F;
  float cut = 0.0F;
};

/// How a 16-bit patch distance becomes an index: ((distance + increment) * multiplier / 2^16) >>
/// shift, the sum stopping at 65535.
struct IndexDivider {
  /// As the formula has them.
  std::uint16_t increment = 0;
  std::uint16_t multiplier = 0;
  int shift = 0;
  bool identity = false;  ///< A patch of one pixel: the distance is the index.
};

/// Everything the fast kernel knows of a request before the first pixel.
struct FastPlan {
  /// The request's, as they came.
  FilterGeometry geometry;
  std::span<const std::uint8_t> source;
  std::span<std::uint8_t> dest;
  std::span<const double> table;
  const JobControl* control = nullptr;
  /// Whether the request was.
  bool isCancelled() const { return control != nullptr && control->isCancelled(); }

  /// The geometry's numbers, by their short names.
  int channels = 0, t = 0, s = 0, sr = 0, tr = 0;
  double tdiv = 0.0;  ///< 0 for a patch without area, so that every distance gives index 0.
  /// Columns that a row of a one-channel patch, or of its averaged pixels, slips to the left.
  int patchSlip = 0, averageSlip = 0;
  /// Distances fit into 16 bits: sums that reach the largest value belong to weight zero.
  bool narrow = false;
  /// Opposite candidates share a shift. Its weights are kept for as many rows as it reaches down;
  /// in large windows those would leave the processor's caches, and computing them twice is faster.
  bool sharesShifts = true;
  /// Rows of squared differences are kept for the next rows rather than computed again.
  bool keepsSquares = false;
  /// How distances become indices and indices weights.
  IndexDivider divider;
  WeightFunction weight;
  /// The mean of D candidates of equal weight that all have this sample. Not always the sample
  /// itself: the sum of D products may fall short of it.
  std::array<std::uint8_t, 256> flatMeans{};
  /// How far a mean in single precision may be from the one that defines the result.
  float bound = 0.0F;
  /// A sum of weights whose means are exact whatever the bound: 1, the pixel's own alone, or what
  /// exactWeightSum says.
  float exactSum = 1.0F;
  /// Decide by the bound; if not, everything is averaged in double precision.
  bool decides = true;

  /// Those of the search window, each once.
  std::vector<SearchShift> shifts;
  std::vector<CandidateSlot> slots;  ///< D of them, candidate (l, k) at l * s + k.
  int lead = 0;                      ///< Rows above a tile whose distances it needs.
  std::size_t weightRows = 0;        ///< Sum of the shifts' rows.

  /// The largest tile, in pixels.
  int tileWidth = 0, tileHeight = 0;
  /// Layout of a tile's rows of the source: they begin `margin` columns left of the tile's first
  /// candidate.
  int margin = 0;
  std::size_t sourceColumns = 0, distanceColumns = 0;
  /// Rows of the source that a tile keeps at a time.
  int sourceRows = 0;
};

/// The largest windows that the fast kernel takes.
inline constexpr int kLargestSearchWindow = 64;
inline constexpr int kLargestTemplate = 31;

/// Elements that vector code may read and write beyond the end of a row.
inline constexpr std::size_t kRowSlack = 64;

/// The plan for a request, or nothing if the fast kernel does not take it: no candidates, windows
/// beyond the largest, an unusual weight table. The weight function and the bound are not set yet.
/// Throws std::bad_alloc.
std::optional<FastPlan> makeFastPlan(const FilterGeometry& geometry, FilterBuffers& buffers);

/// The divider that gives the truncated product distance * 1 / (t * t) for every 16-bit distance
/// whose index is below cutOff, and no index below it for any other. Nothing if there is none, as
/// for t = 7, which is found out by trying them all.
std::optional<IndexDivider> exactDivider(int t, std::int64_t cutOff);

/// How far a pixel's weighted mean as averages-inl.h computes it may be from the
/// double-precision sum that defines the result.
///
/// Let u = 2^-24, w the weights of the table, a the samples less 128 (so |a| <= 128), and
/// M = sum(w a) / sum(w).
///  1. The weights used are w (1 + e) with |e| <= weightError, and zero where w is.
///  2. Each term goes through at most n = 2 s + 1 roundings on its way into a sum: its product, s
///     additions in its window row, s additions of window rows; a fused multiply-add saves one. So
///     the sums are sum(w a (1 + r)) and sum(w (1 + r')), with |r|, |r'| <= rho,
///     rho = (1 + weightError) (1 + n u / (1 - n u)) - 1.
///  3. Their exact quotient is off M by at most (128 rho + |M| rho) / (1 - rho)
///     <= 256 rho / (1 - rho).
///  4. Reciprocal, product and the addition of 128 round once each: 128 (2 u + u^2) + 256 u.
///  5. The double-precision sum itself is off M + 128 by at most 255 (2 D + 3) 2^-53 (1 + tiny),
///     which for D <= 4096 is less than 1e-9.
/// A mean that is farther than this from every integer truncates like the double-precision sum.
float decisionBound(int searchWinSize, double weightError);

/// D, if a sum of D of the weights used can only mean that all of them are 1, and means of so many
/// candidates are exact in either precision: D is a power of two, and its parts are larger than the
/// bound of a mean. Else 1. Smooth areas are full of such pixels, and one in D of their means is a
/// whole number, which the bound alone would leave undecided.
float exactWeightSum(const FastPlan& plan, double weightError);

}  // namespace velmara
