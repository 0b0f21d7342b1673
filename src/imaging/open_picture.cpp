#include "imaging/open_picture.h"

#include <utility>

#include "base/bitmap.h"
#include "imaging/memory_budget.h"

namespace velmara {
namespace {

int load(FileKind kind, VipsSource* source, int page, bool tolerant, VipsImage** image) {
  constexpr auto kAccess = VIPS_ACCESS_SEQUENTIAL;
  constexpr auto kFailOn = VIPS_FAIL_ON_TRUNCATED;
  switch (kind) {
    case FileKind::jpeg:
      // What libjpeg only warns of may be a picture of which the lower half is missing.
      return vips().jpegload_source(source, image, "access", kAccess, "fail_on",
                                    tolerant ? VIPS_FAIL_ON_TRUNCATED : VIPS_FAIL_ON_WARNING,
                                    nullptr);
    case FileKind::png:
      return vips().pngload_source(source, image, "access", kAccess, "fail_on", kFailOn, nullptr);
    case FileKind::tiff:
      return vips().tiffload_source(source, image, "access", kAccess, "fail_on", kFailOn, "page",
                                    page, nullptr);
    case FileKind::gif:
      return vips().gifload_source(source, image, "access", kAccess, "fail_on", kFailOn, nullptr);
    case FileKind::webp:
      return vips().webpload_source(source, image, "access", kAccess, "fail_on", kFailOn, nullptr);
    case FileKind::jpeg2000:
      return vips().jp2kload_source(source, image, "access", kAccess, "fail_on", kFailOn, nullptr);
    case FileKind::heif:
      return vips().heifload_source(source, image, "access", kAccess, "fail_on", kFailOn, nullptr);
    case FileKind::pnm:
      return vips().ppmload_source(source, image, "access", kAccess, "fail_on", kFailOn, nullptr);
    case FileKind::bmp:
      break;
  }
  return -1;
}

int loadBmp(const std::vector<std::uint8_t>& bytes, VipsImage** image) {
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
  if (file.kind == FileKind::jpeg && width * height / 64 > file.file.size() * 8) {
    return damagedFile(file.kind);
  }
  return Done{};
}

}  // namespace

Result<OpenedPicture> openPicture(const PictureFile& file, int page, bool tolerant) {
  OpenedPicture picture;
  VipsImage* image = nullptr;
  int failed = 0;
  if (file.kind == FileKind::bmp) {
    picture.bytes = file.file.read(0, static_cast<std::size_t>(file.file.size()));
    failed = loadBmp(picture.bytes, &image);
  } else {
    const VipsSourcePtr source(vips().source_new_from_descriptor(file.file.descriptor()));
    if (source == nullptr || vips().source_rewind(source.get()) != 0) return damagedFile(file.kind);
    failed = load(file.kind, source.get(), page, tolerant, &image);
  }
  if (failed != 0) return damagedFile(file.kind);
  picture.image.reset(image);
  if (const Status allowed = checkSize(image, file); !allowed) return Error{allowed.error()};
  return picture;
}

Error damagedFile(FileKind kind) {
  const std::string detail = takeVipsError();
  return {"the " + nameOf(kind) + " file is damaged or cut short" +
          (detail.empty() ? "" : " (" + detail + ")")};
}

}  // namespace velmara
