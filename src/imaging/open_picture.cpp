#include "imaging/open_picture.h"

#include <utility>

#include "base/bitmap.h"
#include "imaging/memory_budget.h"

namespace velmara {
namespace {

int loadFromMemory(const std::vector<std::uint8_t>& bytes, VipsImage** image) {
  // libvips takes the buffer as void* but does not write to it.
  return vips().magickload_buffer(const_cast<std::uint8_t*>(bytes.data()), bytes.size(), image,
                                  "access", VIPS_ACCESS_SEQUENTIAL, "fail_on",
                                  VIPS_FAIL_ON_TRUNCATED, nullptr);
}

// The bitmap's own four bytes a pixel and as many that a decoder may need beside it.
constexpr std::uint64_t kBytesWhileDecoding = 8;

Status checkSize(const VipsImage* image, const PictureFile& file) {
  const std::int64_t width = vips().image_get_width(image);
  const std::int64_t height = vips().image_get_height(image);
  const std::string size = std::to_string(width) + " x " + std::to_string(height) + " pixels";
  if (!isAllowedBitmapSize(width, height, 4)) return Error{"the picture is too large: " + size};
  if (!fitsInMemory(static_cast<std::uint64_t>(width * height) * kBytesWhileDecoding)) {
    return Error{"not enough memory for a picture of " + size};
  }
  // Huffman's shortest code is one bit, and every block of 8 x 8 pixels has at least one.
  if (file.format == FileFormat::jpeg && width * height / 64 > file.file.size() * 8) {
    return damagedFile(file.format);
  }
  return Done{};
}

}  // namespace

Result<OpenedPicture> openPicture(const PictureFile& file, int page, bool tolerant) {
  OpenedPicture picture;
  VipsImage* image = nullptr;
  int failed = 0;
  const auto load = factsOf(file.format).load;
  if (load == nullptr) {
    picture.bytes = file.file.read(0, static_cast<std::size_t>(file.file.size()));
    failed = loadFromMemory(picture.bytes, &image);
  } else {
    const VipsSourcePtr source(vips().source_new_from_descriptor(file.file.descriptor()));
    if (source == nullptr || vips().source_rewind(source.get()) != 0)
      return damagedFile(file.format);
    failed = load(source.get(), page, tolerant, &image);
  }
  if (failed != 0) return damagedFile(file.format);
  picture.image.reset(image);
  if (const Status allowed = checkSize(image, file); !allowed) return Error{allowed.error()};
  return picture;
}

Error damagedFile(FileFormat format) {
  const std::string detail = takeVipsError();
  return {"the " + std::string(factsOf(format).name) + " file is damaged or cut short" +
          (detail.empty() ? "" : " (" + detail + ")")};
}

}  // namespace velmara
