#include <cmath>
#include <exception>
#include <utility>

#include "imaging/decoding.h"
#include "imaging/metadata.h"
#include "imaging/metadata_carrier.h"
#include "imaging/raw_metadata.h"

namespace velmara {
namespace {

std::string colorModelOf(VipsImage* image) {
  constexpr const char* kNames[] = {"Gray", "RGB", "CMYK", "Lab"};
  const auto usual = vips().image_get_bands(image) < 3 ? PictureColors::gray : PictureColors::rgb;
  return kNames[static_cast<std::size_t>(colorsOf(image).value_or(usual))];
}

// Pixels an inch; a value that differs from a whole number by the rounding of a unit is that
// number.
double dotsPerInch(double pixelsPerMillimetre) {
  const double dpi = pixelsPerMillimetre * 25.4;
  return std::abs(dpi - std::round(dpi)) < 0.01 ? std::round(dpi) : dpi;
}

void addHeader(VipsImage* image, MetadataDictionary& dictionary) {
  dictionary.emplace("PixelWidth", vips().image_get_width(image));
  dictionary.emplace("PixelHeight", vips().image_get_height(image));
  dictionary.emplace("ColorModel", colorModelOf(image));
  dictionary.emplace("HasAlpha", vips().image_hasalpha(image) != 0);
  dictionary.emplace("Depth", static_cast<int>(8 * vips().format_sizeof(image->BandFmt)));
  const double across = vips().image_get_xres(image);
  const double down = vips().image_get_yres(image);
  // 1 pixel a millimetre is what libvips says when the file says nothing.
  if (across > 0.0 && down > 0.0 && (across != 1.0 || down != 1.0)) {
    dictionary.emplace("DPIWidth", dotsPerInch(across));
    dictionary.emplace("DPIHeight", dotsPerInch(down));
  }
  if (const ColorProfile profile = embeddedProfile(image)) {
    std::string name = profileName(*profile);
    if (!name.empty()) dictionary.emplace("ProfileName", std::move(name));
  }
}

// Of a RAW's picture as it is developed.
void addRawHeader(const RawFacts& facts, MetadataDictionary& dictionary) {
  dictionary.emplace("PixelWidth", facts.width);
  dictionary.emplace("PixelHeight", facts.height);
  dictionary.emplace("ColorModel", "RGB");
  dictionary.emplace("HasAlpha", false);
  dictionary.emplace("Depth", kRawOutputBits);
}

// The containers Exiv2 cannot open: libvips hands out the packets. The turn is in the container and
// has been applied, so the tag, if it is there at all, has nothing to say any more.
void readPackets(const VipsImage* image, MetadataCarrier& carrier) {
  auto exif = blobOf(image, VIPS_META_EXIF_NAME);
  constexpr std::size_t kExifMark = 6;  // "Exif\0\0"
  if (exif.size() > kExifMark && exif[0] == 'E') exif = exif.subspan(kExifMark);
  if (!exif.empty()) {
    carrier.byteOrder = Exiv2::ExifParser::decode(carrier.exif, exif.data(),
                                                  static_cast<std::uint32_t>(exif.size()));
    if (carrier.exif.findKey(Exiv2::ExifKey("Exif.Image.Orientation")) != carrier.exif.end()) {
      carrier.exif["Exif.Image.Orientation"] = std::uint16_t{1};
    }
  }
  const auto xmp = blobOf(image, VIPS_META_XMP_NAME);
  if (!xmp.empty()) {
    const std::string packet(reinterpret_cast<const char*>(xmp.data()), xmp.size());
    Exiv2::XmpParser::decode(carrier.xmp, packet);
  }
}

// Up to here a file is read into memory for its metadata; beyond, which only TIFFs are, Exiv2 looks
// at the file itself.
constexpr std::int64_t kMostReadWhole = std::int64_t{64} << 20U;

void readFile(const PictureFile& file, MetadataCarrier& carrier) {
  const bool isWhole = file.file.size() <= kMostReadWhole;
  const auto bytes = isWhole ? file.file.read(0, static_cast<std::size_t>(file.file.size()))
                             : std::vector<std::uint8_t>();
  // Given the file and not its name, Exiv2 does not take names for addresses to fetch.
  Exiv2::BasicIo::AutoPtr io(isWhole ? static_cast<Exiv2::BasicIo*>(new Exiv2::MemIo(
                                           bytes.data(), static_cast<long>(bytes.size())))
                                     : new Exiv2::FileIo(file.path));
  const Exiv2::Image::AutoPtr image = Exiv2::ImageFactory::open(io);
  if (image.get() == nullptr) return;
  image->readMetadata();
  carrier.exif = image->exifData();
  carrier.iptc = image->iptcData();
  carrier.xmp = image->xmpData();
  carrier.comment = image->comment();
  carrier.byteOrder = image->byteOrder();
}

std::shared_ptr<const MetadataCarrier> readCarrier(const PictureFile& file,
                                                   const VipsImage* image) {
  const auto lock = lockExiv2();
  auto carrier = std::make_shared<MetadataCarrier>();
  try {
    const MetadataPlace place = factsOf(file.format).metadata;
    if (place == MetadataPlace::file) readFile(file, *carrier);
    if (place == MetadataPlace::packets) readPackets(image, *carrier);
  } catch (const std::exception&) {
    // What was understood before stays.
  }
  try {
    if (file.raw) completeRawExif(*file.raw, carrier->exif);
  } catch (const std::exception&) {
    // As far as it came.
  }
  return carrier;
}

}  // namespace

std::optional<ImageMetadata> readMetadata(const std::string& path) {
  const auto file = openPictureFile(path);
  return file ? readMetadata(*file) : std::nullopt;
}

std::optional<ImageMetadata> readMetadata(const PictureFile& file) {
  try {
    MetadataDictionary dictionary;
    std::shared_ptr<const MetadataCarrier> carrier;
    if (file.raw) {
      addRawHeader(*file.raw, dictionary);
      carrier = readCarrier(file, nullptr);
    } else {
      const auto picture = openPicture(file, 0);
      if (!picture) return std::nullopt;
      addHeader(picture->image.get(), dictionary);
      carrier = readCarrier(file, picture->image.get());
    }
    const auto lock = lockExiv2();
    try {
      addMetadataGroups(*carrier, dictionary);
    } catch (const Exiv2::AnyError&) {
      // The groups filled before stay.
    }
    return ImageMetadata(std::move(dictionary), std::move(carrier));
  } catch (const std::exception&) {
    return std::nullopt;
  }
}

const MetadataValue* ImageMetadata::find(const std::string& key) const {
  const auto item = dictionary_.find(key);
  return item != dictionary_.end() ? &item->second : nullptr;
}

const MetadataValue* ImageMetadata::find(const std::string& group, const std::string& key) const {
  const MetadataValue* entry = find(group);
  const MetadataDictionary* entries = entry != nullptr ? entry->group() : nullptr;
  if (entries == nullptr) return nullptr;
  const auto item = entries->find(key);
  return item != entries->end() ? &item->second : nullptr;
}

}  // namespace velmara
