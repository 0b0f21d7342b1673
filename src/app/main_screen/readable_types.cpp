#include "app/main_screen/readable_types.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <string_view>

namespace velmara {
namespace {

constexpr std::array<std::string_view, 20> kTypes{
    "jpg", "jpeg", "jpe", "png", "tiff", "tif",  "bmp",  "dib", "gif", "webp",
    "jp2", "j2k",  "jpx", "jpf", "heic", "heif", "avif", "ppm", "pgm", "pnm"};

}  // namespace

std::vector<std::string> readableFileTypes() {
  std::vector<std::string> types;
  for (const std::string_view type : kTypes) {
    types.emplace_back(type);
    std::string upper(type);
    std::transform(upper.begin(), upper.end(), upper.begin(),
                   [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    types.push_back(upper);
  }
  return types;
}

bool isReadableFileType(const std::string& fileExtension) {
  const auto types = readableFileTypes();
  return std::find(types.begin(), types.end(), fileExtension) != types.end();
}

}  // namespace velmara
