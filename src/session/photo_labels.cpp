#include "session/photo_labels.h"

#include <charconv>

#include "base/fixed_text.h"

namespace velmara {

std::string dimensionsLabel(std::int64_t width, std::int64_t height) {
  return std::to_string(width) + " x " + std::to_string(height) + " px";
}

std::string sizeLabel(const std::string& fileSize) {
  double bytes = 0.0;
  std::from_chars(fileSize.data(), fileSize.data() + fileSize.size(), bytes);
  if (bytes < 1000.0) return "Size: " + fixedText(bytes, 0) + " KB";
  if (bytes < 1'000'000.0) return "Size: " + fixedText(bytes / 1000.0, 0) + " KB";
  return "Size: " + fixedText(bytes / 1'000'000.0, 2) + " MB";
}

std::string pathLabel(const std::string& filePath) {
  return "Path : " + filePath;
}

}  // namespace velmara
