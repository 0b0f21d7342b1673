#include "engine/fast/decision_bound.h"

#include <cmath>

namespace velmara {

float decisionBound(int searchWinSize, double weightError) {
  const double u = std::ldexp(1.0, -24);
  const double roundings = (2.0 * searchWinSize + 1.0) * u;
  const double rho = (1.0 + weightError) * (1.0 + roundings / (1.0 - roundings)) - 1.0;
  const double bound = 256.0 * rho / (1.0 - rho) + 128.0 * (2.0 * u + u * u) + 256.0 * u + 1e-9;
  return static_cast<float>(1.001 * bound);  // A little more, for the roundings of this formula.
}

}  // namespace velmara
