#include "engine/calibration.h"

#include <limits>

namespace velmara {
namespace {

std::int64_t truncated(double value) {
  constexpr double kBeyond = 9223372036854775808.0;  // 2^63
  if (value >= kBeyond) return std::numeric_limits<std::int64_t>::max();
  return value > -kBeyond ? static_cast<std::int64_t>(value) : 0;
}

}  // namespace

std::int64_t pixelsPerSecond(Size size, double seconds) {
  const auto pixels = static_cast<double>(truncated(size.width * size.height));
  if (pixels == 0.0) return 0;
  if (!(seconds > 0.0)) return std::numeric_limits<std::int64_t>::max();
  return truncated(pixels / seconds);
}

}  // namespace velmara
