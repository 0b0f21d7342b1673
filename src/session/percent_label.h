#pragma once

#include <cmath>
#include <string>

namespace velmara {

/// "%.0f %%" of a percentage: rounded to a whole number, halves to the even one.
inline std::string percentLabel(double percent) {
  return std::to_string(std::llrint(percent)) + " %";
}

}  // namespace velmara
