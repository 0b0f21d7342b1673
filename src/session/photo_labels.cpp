#include "session/photo_labels.h"

#include <array>
#include <charconv>

namespace velmara {
namespace {

// Not printf, whose decimal point follows the user's locale.
std::string fixed(double value, int decimals) {
  std::array<char, 400> text{};
  const auto end = std::to_chars(text.data(), text.data() + text.size(), value,
                                 std::chars_format::fixed, decimals);
  return {text.data(), end.ptr};
}

}  // namespace

std::string dimensionsLabel(std::int64_t width, std::int64_t height) {
  return std::to_string(width) + " x " + std::to_string(height) + " px";
}

std::string sizeLabel(const std::string& fileSize) {
  double bytes = 0.0;
  std::from_chars(fileSize.data(), fileSize.data() + fileSize.size(), bytes);
  if (bytes < 1000.0) return "Size: " + fixed(bytes, 0) + " KB";
  if (bytes < 1'000'000.0) return "Size: " + fixed(bytes / 1000.0, 0) + " KB";
  return "Size: " + fixed(bytes / 1'000'000.0, 2) + " MB";
}

std::string pathLabel(const std::string& filePath) {
  return "Path : " + filePath;
}

}  // namespace velmara
