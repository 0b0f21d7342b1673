#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "base/bitmap.h"
#include "base/geometry.h"

namespace velmara {

/// A colour picture as brightness, red against blue, and green against both, in sixteenths of a
/// level: an orthonormal transform, so noise that is alike in red, green and blue is so in the
/// planes.
///
/// The sides are padded at the right and the bottom to multiples of kStep and to at least
/// kLeastSide by mirroring, so a regular grid of 8 x 8 blocks covers the picture and every block
/// has company enough. Each plane has kSlack samples more than it has pixels, for vectors that read
/// beyond.
struct OpponentPlanes {
  /// Units in a sample of 0 to 255, the sides' divisor, the least side, and samples beyond the end.
  static constexpr int kOne = 16;
  static constexpr int kStep = 4;
  static constexpr int kLeastSide = 16;
  static constexpr std::size_t kSlack = 64;

  /// Sides after padding, and samples by plane: brightness, then the two differences.
  int width = 0;
  int height = 0;
  std::array<std::vector<std::int16_t>, 3> planes;

  /// Zeros; nothing if the memory is not to be had.
  static std::optional<OpponentPlanes> allocate(int width, int height);
  /// In a plane.
  std::size_t pixels() const {
    return static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
  }
};

/// A side of a picture as OpponentPlanes has it.
constexpr int paddedSide(int side) {
  const int padded =
      (side + OpponentPlanes::kStep - 1) / OpponentPlanes::kStep * OpponentPlanes::kStep;
  return padded < OpponentPlanes::kLeastSide ? OpponentPlanes::kLeastSide : padded;
}

/// The rows of the transform: plane k is the sum of kOpponent[k][c] times channel c.
inline constexpr float kOpponent[3][3] = {{0.57735026919F, 0.57735026919F, 0.57735026919F},
                                          {0.70710678119F, 0.0F, -0.70710678119F},
                                          {0.40824829046F, -0.81649658093F, 0.40824829046F}};

/// Writes rows [rowBegin, rowEnd) of the planes of a bitmap of any number of samples; alpha is left
/// out. `planes` has the padded size of the bitmap.
void toOpponent(const Bitmap& bitmap, OpponentPlanes& planes, int rowBegin, int rowEnd);

/// For each channel, the sample to write for each value from 0 to 255 in sixteenths.
using SampleTables = std::array<std::array<std::uint8_t, 255 * OpponentPlanes::kOne + 1>, 3>;

/// Writes rows [rowBegin, rowEnd) of a picture from its planes. What the planes do not hold, alpha,
/// is copied from `original`, whose size and samples per pixel `samples` has.
void fromOpponent(const OpponentPlanes& planes, const SampleTables& tables, const Bitmap& original,
                  std::uint8_t* samples, int rowBegin, int rowEnd);

/// Leaves what is inside a rectangle, which lies in the planes; false if the memory is not to be
/// had.
bool cropTo(OpponentPlanes& planes, const PixelRect& rect);

/// Half a side, rounded down to what OpponentPlanes allows.
constexpr int halvedSide(int side) {
  const int half = side / 2 / OpponentPlanes::kStep * OpponentPlanes::kStep;
  return half < OpponentPlanes::kLeastSide ? OpponentPlanes::kLeastSide : half;
}

/// Half the width and height: means of 2 x 2.
std::optional<OpponentPlanes> halved(const OpponentPlanes& planes);

/// Adds (filtered - plain), both of half the size, to rows [rowBegin, rowEnd) of `planes`, enlarged
/// linearly.
void addEnlargedDifference(const OpponentPlanes& filtered, const OpponentPlanes& plain,
                           OpponentPlanes& planes, int rowBegin, int rowEnd);

}  // namespace velmara
