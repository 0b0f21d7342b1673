#include "imaging/recompress_jpeg.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "imaging/eight_bit.h"
#include "imaging/image_writer.h"

namespace velmara {

int jpegQualityOfFactor(float factor) {
  if (!(factor > 0.0F)) return 1;
  return std::clamp(static_cast<int>(std::lround(std::min(factor, 1.0F) * 100.0F)), 1, 100);
}

Image recompressJpeg(const Image& image, float factor) {
  if (!image.isValid()) return {};
  EncodeOptions options;
  options.quality = jpegQualityOfFactor(factor);
  const auto bytes = encodeImage(image.bitmap(), nullptr, FileFormat::jpeg, options);
  if (!bytes) return {};
  VipsImage* decoded = nullptr;
  if (vips().jpegload_buffer(const_cast<std::uint8_t*>(bytes->data()), bytes->size(), &decoded,
                             "access", VIPS_ACCESS_SEQUENTIAL, nullptr) != 0) {
    return {};
  }
  const VipsImagePtr owner(decoded);
  const auto bitmap = toBitmap(decoded);
  return bitmap ? Image(*bitmap, image.profile()) : Image{};
}

}  // namespace velmara
