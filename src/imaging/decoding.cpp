#include "imaging/decoding.h"

#include <algorithm>
#include <cstring>
#include <optional>
#include <utility>

#include "imaging/color_profile.h"
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

enum class Colors { gray, rgb, cmyk, lab };

constexpr int kStripRows = 64;

std::optional<Colors> colorsOf(VipsImage* image) {
  const int bands = vips().image_get_bands(image);
  switch (vips().image_guess_interpretation(image)) {
    case VIPS_INTERPRETATION_B_W:
    case VIPS_INTERPRETATION_GREY16:
      return Colors::gray;
    case VIPS_INTERPRETATION_sRGB:
    case VIPS_INTERPRETATION_RGB:
    case VIPS_INTERPRETATION_RGB16:
      return bands >= 3 ? Colors::rgb : Colors::gray;
    case VIPS_INTERPRETATION_CMYK:
      return bands >= 4 ? std::optional(Colors::cmyk) : std::nullopt;
    case VIPS_INTERPRETATION_LAB:
    case VIPS_INTERPRETATION_LABS:
      return bands >= 3 ? std::optional(Colors::lab) : std::nullopt;
    default:
      return std::nullopt;
  }
}

int sampleCount(Colors colors) {
  switch (colors) {
    case Colors::gray:
      return 1;
    case Colors::cmyk:
      return 4;
    case Colors::rgb:
    case Colors::lab:
      break;
  }
  return 3;
}

/// The embedded profile if it is one for these colours.
ColorProfile matchingProfile(const VipsImage* image, Colors colors) {
  ColorProfile profile = embeddedProfile(image);
  if (profile == nullptr) return nullptr;
  const auto meant = profileColors(*profile);
  const bool matches = (colors == Colors::gray && meant == ProfileColors::gray) ||
                       (colors == Colors::rgb && meant == ProfileColors::rgb) ||
                       (colors == Colors::cmyk && meant == ProfileColors::cmyk);
  return matches ? profile : nullptr;
}

/// Takes the place of an image with the result of an operation on it; false if that failed.
bool replace(VipsImagePtr& image, int failed, VipsImage* result) {
  if (failed != 0) return false;
  image.reset(result);
  return true;
}

bool extractBands(VipsImagePtr& image, int first, int count) {
  if (first == 0 && count == vips().image_get_bands(image.get())) return true;
  VipsImage* part = nullptr;
  const int failed = vips().extract_band(image.get(), &part, first, "n", count, nullptr);
  return replace(image, failed, part);
}

bool throughProfile(VipsImagePtr& image, Colors colors, bool hasProfile) {
  VipsImage* out = nullptr;
  const char* fallback = colors == Colors::cmyk ? "cmyk" : "srgb";
  const int failed =
      vips().icc_transform(image.get(), &out, "srgb", "embedded", static_cast<gboolean>(hasProfile),
                           "input_profile", fallback, "intent", VIPS_INTENT_RELATIVE,
                           "black_point_compensation", TRUE, "depth", 8, nullptr);
  if (!replace(image, failed, out)) return false;
  return colors != Colors::gray || extractBands(image, 1, 1);
}

bool labToRgb(VipsImagePtr& image) {
  VipsImage* out = nullptr;
  const int failed = vips().colourspace(image.get(), &out, VIPS_INTERPRETATION_sRGB, nullptr);
  return replace(image, failed, out);
}

/// Puts an alpha sample of 8 or 16 bits behind 8-bit colours.
bool joinAlpha(VipsImagePtr& image, VipsImagePtr alpha) {
  if (vips().image_get_format(alpha.get()) == VIPS_FORMAT_USHORT) {
    VipsImage* narrow = nullptr;
    const int failed = vips().msb(alpha.get(), &narrow, nullptr);
    if (!replace(alpha, failed, narrow)) return false;
  }
  VipsImage* joined = nullptr;
  const int failed = vips().bandjoin2(image.get(), alpha.get(), &joined, nullptr);
  return replace(image, failed, joined);
}

/// Converts what has to go through a profile, alpha kept aside meanwhile.
bool convertColors(VipsImagePtr& image, Colors colors, bool hasProfile) {
  const int samples = sampleCount(colors);
  VipsImagePtr alpha;
  if (vips().image_get_bands(image.get()) > samples) {
    vips().object_ref(image.get());
    alpha.reset(image.get());
    if (!extractBands(alpha, samples, 1) || !extractBands(image, 0, samples)) return false;
  }
  const bool converted =
      colors == Colors::lab ? labToRgb(image) : throughProfile(image, colors, hasProfile);
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

Result<PlainPicture> toPlainPicture(VipsImagePtr image) {
  const std::optional<Colors> colors = colorsOf(image.get());
  const VipsBandFormat format = vips().image_get_format(image.get());
  const bool isPlain = format == VIPS_FORMAT_UCHAR || format == VIPS_FORMAT_USHORT;
  if (!colors || vips().image_get_coding(image.get()) != VIPS_CODING_NONE ||
      (!isPlain && colors != Colors::lab)) {
    return Error{"pictures with " + std::to_string(vips().image_get_bands(image.get())) +
                 " samples of this kind a pixel cannot be read"};
  }
  // Samples beyond colours and alpha belong to programs that made them.
  const int wanted = std::min(vips().image_get_bands(image.get()), sampleCount(*colors) + 1);
  ColorProfile profile = matchingProfile(image.get(), *colors);
  if (!extractBands(image, 0, wanted)) return Error{};

  const bool isPalette = vips().image_get_typeof(image.get(), "palette-bit-depth") != 0;
  const bool isDeep = format != VIPS_FORMAT_UCHAR;
  const bool convert = *colors == Colors::cmyk || *colors == Colors::lab ||
                       (profile != nullptr && (*colors == Colors::gray || isDeep || isPalette));
  if (convert) {
    if (!convertColors(image, *colors, profile != nullptr)) return Error{};
    profile = nullptr;
  }
  return PlainPicture{std::move(image), std::move(profile)};
}

Result<Bitmap> toBitmap(VipsImage* image, const JobControl* control) {
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
  }
  return std::move(*bitmap).finish();
}

}  // namespace velmara
