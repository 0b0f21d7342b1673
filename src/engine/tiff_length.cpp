#include "engine/tiff_length.h"

namespace velmara {
namespace {

constexpr std::uint64_t kFileHeader = 8;

// What a picture takes: its samples, a directory of twelve required fields (thirteen with alpha),
// the two resolutions, and the bit depths where they do not fit into their field.
std::uint64_t pictureLength(const Bitmap& bitmap) {
  constexpr std::uint64_t kCountAndLink = 2 + 4;
  constexpr std::uint64_t kField = 12;
  constexpr std::uint64_t kResolutions = 2 * 8;
  const auto samples = static_cast<std::uint64_t>(bitmap.samplesPerPixel());
  const std::uint64_t fields = bitmap.hasAlpha() ? 13 : 12;
  const std::uint64_t bitDepths = samples > 2 ? 2 * samples : 0;
  return kCountAndLink + fields * kField + kResolutions + bitDepths + bitmap.byteCount();
}

}  // namespace

std::uint64_t tiffLength(const Bitmap& bitmap) {
  return kFileHeader + pictureLength(bitmap);
}

std::uint64_t tiffLength(const Image& image) {
  std::uint64_t length = kFileHeader;
  for (const Bitmap& bitmap : image.representations()) length += pictureLength(bitmap);
  return length;
}

}  // namespace velmara
