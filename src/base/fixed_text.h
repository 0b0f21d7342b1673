#pragma once

#include <array>
#include <charconv>
#include <string>

namespace velmara {

/// A number with a fixed count of decimals (the printf format "%.nf") and a point whatever the
/// user's locale is.
inline std::string fixedText(double value, int decimals) {
  std::array<char, 400> text{};  // The largest double has 309 digits.
  const auto end =
      std::to_chars(text.begin(), text.end(), value, std::chars_format::fixed, decimals);
  return {text.data(), end.ptr};
}

}  // namespace velmara
