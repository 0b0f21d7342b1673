#include "imaging/decoding.h"

#include <algorithm>
#include <cstring>
#include <utility>

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

constexpr int kStripRows = 64;

int sampleCount(PictureColors colors) {
  if (colors == PictureColors::gray) return 1;
  return colors == PictureColors::cmyk ? 4 : 3;
}

/// The embedded profile if it is one for these colours.
ColorProfile matchingProfile(const VipsImage* image, PictureColors colors) {
  ColorProfile profile = embeddedProfile(image);
  return profile != nullptr && profileColors(*profile) == colors ? profile : nullptr;
}

bool extractBands(VipsImagePtr& image, int first, int count) {
  return (first == 0 && count == vips().image_get_bands(image.get())) ||
         replaceBy<&VipsApi::extract_band>(image, first, "n", count);
}

bool throughProfile(VipsImagePtr& image, PictureColors colors, bool hasProfile) {
  const char* fallback = colors == PictureColors::cmyk ? "cmyk" : "srgb";
  return replaceBy<&VipsApi::icc_transform>(image, "srgb", "embedded",
                                            static_cast<gboolean>(hasProfile), "input_profile",
                                            fallback, "intent", VIPS_INTENT_RELATIVE,
                                            "black_point_compensation", TRUE, "depth", 8) &&
         (colors != PictureColors::gray || extractBands(image, 1, 1));
}

/// Puts an alpha sample of 8 or 16 bits behind 8-bit colours.
bool joinAlpha(VipsImagePtr& image, VipsImagePtr alpha) {
  if (vips().image_get_format(alpha.get()) == VIPS_FORMAT_USHORT &&
      !replaceBy<&VipsApi::msb>(alpha)) {
    return false;
  }
  VipsImage* joined = nullptr;
  if (vips().bandjoin2(image.get(), alpha.get(), &joined, nullptr) != 0) return false;
  image.reset(joined);
  return true;
}

/// Converts what has to go through a profile, alpha kept aside meanwhile.
bool convertColors(VipsImagePtr& image, PictureColors colors, bool hasProfile) {
  const int samples = sampleCount(colors);
  VipsImagePtr alpha;
  if (vips().image_get_bands(image.get()) > samples) {
    vips().object_ref(image.get());
    alpha.reset(image.get());
    if (!extractBands(alpha, samples, 1) || !extractBands(image, 0, samples)) return false;
  }
  const bool converted = colors == PictureColors::lab
                             ? replaceBy<&VipsApi::colourspace>(image, VIPS_INTERPRETATION_sRGB)
                             : throughProfile(image, colors, hasProfile);
  return converted && (alpha == nullptr || joinAlpha(image, std::move(alpha)));
}

void copyRow(const VipsPel* from, VipsBandFormat format, std::size_t samples, std::uint8_t* to) {
  if (format == VIPS_FORMAT_UCHAR) {
    std::memcpy(to, from, samples);
    return;
  }
  const auto* wide = reinterpret_cast<const std::uint16_t*>(from);
  for (std::size_t i = 0; i < samples; ++i) {
    to[i] = static_cast<std::uint8_t>((wide[i] * 255U + 32767U) / 65535U);
  }
}

// A row of a region that begins at the picture's left edge.
const std::uint8_t* rowOf(const VipsRegion& region, int y) {
  return region.data + static_cast<std::ptrdiff_t>(y - region.valid.top) * region.bpl;
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

std::span<const std::uint8_t> blobOf(const VipsImage* image, const char* name) {
  const void* data = nullptr;
  std::size_t size = 0;
  if (vips().image_get_typeof(image, name) == 0 ||
      vips().image_get_blob(image, name, &data, &size) != 0) {
    return {};
  }
  return {static_cast<const std::uint8_t*>(data), size};
}

ColorProfile embeddedProfile(const VipsImage* image) {
  const auto bytes = blobOf(image, VIPS_META_ICC_NAME);
  if (!profileColors(bytes)) return nullptr;
  return std::make_shared<const std::vector<std::uint8_t>>(bytes.begin(), bytes.end());
}

std::optional<PictureColors> colorsOf(VipsImage* image) {
  const int bands = vips().image_get_bands(image);
  switch (vips().image_guess_interpretation(image)) {
    case VIPS_INTERPRETATION_B_W:
    case VIPS_INTERPRETATION_GREY16:
      return PictureColors::gray;
    case VIPS_INTERPRETATION_sRGB:
    case VIPS_INTERPRETATION_RGB:
    case VIPS_INTERPRETATION_RGB16:
      return bands >= 3 ? PictureColors::rgb : PictureColors::gray;
    case VIPS_INTERPRETATION_CMYK:
      return bands >= 4 ? std::optional(PictureColors::cmyk) : std::nullopt;
    case VIPS_INTERPRETATION_LAB:
    case VIPS_INTERPRETATION_LABS:
      return bands >= 3 ? std::optional(PictureColors::lab) : std::nullopt;
    default:
      return std::nullopt;
  }
}

Result<PlainPicture> toPlainPicture(VipsImagePtr image) {
  const std::optional<PictureColors> colors = colorsOf(image.get());
  const VipsBandFormat format = vips().image_get_format(image.get());
  const bool isPlain = format == VIPS_FORMAT_UCHAR || format == VIPS_FORMAT_USHORT;
  if (!colors || vips().image_get_coding(image.get()) != VIPS_CODING_NONE ||
      (!isPlain && colors != PictureColors::lab)) {
    return Error{"pictures with " + std::to_string(vips().image_get_bands(image.get())) +
                 " samples of this kind a pixel cannot be read"};
  }
  // Samples beyond colours and alpha belong to programs that made them.
  const int wanted = std::min(vips().image_get_bands(image.get()), sampleCount(*colors) + 1);
  ColorProfile profile = matchingProfile(image.get(), *colors);
  if (!extractBands(image, 0, wanted)) return Error{};

  const bool isPalette = vips().image_get_typeof(image.get(), "palette-bit-depth") != 0;
  const bool isDeep = format != VIPS_FORMAT_UCHAR;
  const bool convert =
      *colors == PictureColors::cmyk || *colors == PictureColors::lab ||
      (profile != nullptr && (*colors == PictureColors::gray || isDeep || isPalette));
  if (convert) {
    if (!convertColors(image, *colors, profile != nullptr)) return Error{};
    profile = nullptr;
  }
  return PlainPicture{std::move(image), std::move(profile)};
}

Result<Bitmap> toBitmap(
    VipsImage* image, const JobControl* control,
    const std::function<void(const Bitmap& unfinished, int rows)>& rowsDecoded) {
  const int width = vips().image_get_width(image);
  const int height = vips().image_get_height(image);
  auto bitmap = BitmapBuilder::allocate(width, height, vips().image_get_bands(image));
  if (!bitmap) return Error{"not enough memory for the picture"};
  const VipsBandFormat format = vips().image_get_format(image);
  const VipsRegionPtr region(vips().region_new(image));
  for (int top = 0; top < height; top += kStripRows) {
    if (control != nullptr && control->isCancelled()) return Error{"reading was cancelled"};
    const VipsRect strip = {0, top, width, std::min(kStripRows, height - top)};
    if (vips().region_prepare(region.get(), &strip) != 0) return Error{};
    for (int y = top; y < top + strip.height; ++y) {
      copyRow(rowOf(*region, y), format, bitmap->rowBytes(), bitmap->row(y));
    }
    if (rowsDecoded) rowsDecoded(bitmap->unfinished(), top + strip.height);
  }
  return std::move(*bitmap).finish();
}

}  // namespace velmara
