#include "imaging/image_writer.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <new>

#include "base/pixel_operations.h"
#include "imaging/decoding.h"
#include "imaging/initialise.h"

namespace velmara {
namespace {

constexpr double kMillimetresPerInch = 25.4;

/// The bitmap as libvips sees it, its samples shared and not copied.
VipsImagePtr wrapped(const Bitmap& bitmap) {
  return VipsImagePtr(vips().image_new_from_memory(bitmap.bytes().data(), bitmap.byteCount(),
                                                   bitmap.width(), bitmap.height(),
                                                   bitmap.samplesPerPixel(), VIPS_FORMAT_UCHAR));
}

VipsImagePtr described(VipsImage* image, const ColorProfile& profile,
                       const EncodeOptions& options) {
  const Resolution resolution = options.resolution.value_or(Resolution{});
  VipsImage* copy = nullptr;
  if (vips().copy(
          image, &copy, "interpretation",
          vips().image_get_bands(image) <= 2 ? VIPS_INTERPRETATION_B_W : VIPS_INTERPRETATION_sRGB,
          "xres", resolution.width / kMillimetresPerInch, "yres",
          resolution.height / kMillimetresPerInch, nullptr) != 0) {
    return nullptr;
  }
  if (profile != nullptr) {
    vips().image_set_blob_copy(copy, VIPS_META_ICC_NAME, profile->data(), profile->size());
  }
  return VipsImagePtr(copy);
}

// What was written to a target in memory. Savers end their target, after which its bytes are to be
// had as its blob only.
std::vector<std::uint8_t> contentsOf(VipsTarget* target) {
  VipsBlob* blob = nullptr;
  vips().object_get(target, "blob", &blob, nullptr);
  const std::unique_ptr<VipsBlob, void (*)(VipsBlob*)> held(
      blob, [](VipsBlob* area) { vips().area_unref(VIPS_AREA(area)); });
  std::size_t size = 0;
  const auto* bytes = static_cast<const std::uint8_t*>(vips().blob_get(blob, &size));
  return {bytes, bytes + size};
}

// The JPEG quality of a compression factor, 0.0 for the strongest compression to 1.0 for the least.
int jpegQualityOfFactor(float factor) {
  if (!(factor > 0.0F)) return 1;
  return std::clamp(static_cast<int>(std::lround(std::min(factor, 1.0F) * 100.0F)), 1, 100);
}

Error cannotEncode() {
  return {"the picture cannot be encoded (" + takeVipsError() + ")"};
}

Result<std::vector<std::uint8_t>> encode(const Bitmap& bitmap, const ColorProfile& profile,
                                         FileFormat format, const EncodeOptions& options) {
  const bool dropsAlpha = bitmap.hasAlpha() && isOpaque(bitmap);
  const FormatFacts& facts = factsOf(format);
  const bool flattens = bitmap.hasAlpha() && !dropsAlpha && !facts.carriesAlpha;
  const Bitmap flat = flattens ? withoutAlpha(bitmap) : bitmap;
  if (!flat.isValid()) return Error{"not enough memory for the picture"};
  VipsImagePtr image = wrapped(flat);
  if (image == nullptr || (dropsAlpha && !replaceBy<&VipsApi::extract_band>(
                                             image, 0, "n", flat.samplesPerPixel() - 1))) {
    return cannotEncode();
  }
  return encodeVipsImage(image.get(), profile, format, options);
}

}  // namespace

Result<std::vector<std::uint8_t>> encodeVipsImage(VipsImage* image, const ColorProfile& profile,
                                                  FileFormat format, const EncodeOptions& options) {
  const FormatFacts& facts = factsOf(format);
  const VipsImagePtr whole = described(image, facts.carriesProfile ? profile : nullptr, options);
  const VipsTargetPtr target(vips().target_new_to_memory());
  if (whole == nullptr || target == nullptr ||
      facts.save(whole.get(), std::clamp(options.quality, 1, 100), target.get()) != 0) {
    return cannotEncode();
  }
  return contentsOf(target.get());
}

Result<std::vector<std::uint8_t>> encodeImage(const Bitmap& bitmap, const ColorProfile& profile,
                                              FileFormat format, const EncodeOptions& options) {
  if (!bitmap.isValid()) return Error{"there is no picture to encode"};
  if (factsOf(format).save == nullptr) {
    return Error{std::string(factsOf(format).name) + " files are not written"};
  }
  if (!initialiseImaging()) return Error{"the picture libraries cannot be started"};
  try {
    return encode(bitmap, profile, format, options);
  } catch (const std::bad_alloc&) {
    return Error{"not enough memory for the picture"};
  }
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
