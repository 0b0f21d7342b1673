#include "base/fixed_text.h"

#include <array>
#include <charconv>

namespace velmara {

std::string fixedText(double value, int decimals) {
  constexpr std::size_t kLongestNumber = 400;  // The largest double has 309 digits.
  std::array<char, kLongestNumber> text{};
  const auto end = std::to_chars(text.data(), text.data() + text.size(), value,
                                 std::chars_format::fixed, decimals);
  return {text.data(), end.ptr};
}

}  // namespace velmara
