#include <algorithm>
#include <exception>
#include <set>
#include <string>
#include <utility>

#include "imaging/image_writer.h"
#include "imaging/initialise.h"
#include "imaging/metadata_carrier.h"

namespace velmara {
namespace {

/// Whether a picture of this size is the one the metadata was read from with its sides exchanged.
bool isTurned(const ImageMetadata& metadata, int width, int height) {
  return width != height && metadata.valueOf<std::int64_t>("PixelWidth") == height &&
         metadata.valueOf<std::int64_t>("PixelHeight") == width;
}

template <typename Data, typename Predicate>
void eraseWhere(Data& data, Predicate predicate) {
  for (auto entry = data.begin(); entry != data.end();) {
    entry = predicate(*entry) ? data.erase(entry) : std::next(entry);
  }
}

void exchange(Exiv2::ExifData& exif, const char* first, const char* second) {
  const auto a = exif.findKey(Exiv2::ExifKey(first));
  const auto b = exif.findKey(Exiv2::ExifKey(second));
  if (a == exif.end() || b == exif.end()) return;
  const Exiv2::Value::AutoPtr kept = a->getValue();
  a->setValue(&b->value());
  b->setValue(kept.get());
}

void setIfThere(Exiv2::XmpData& xmp, const char* key, int value) {
  const auto entry = xmp.findKey(Exiv2::XmpKey(key));
  if (entry != xmp.end()) entry->setValue(std::to_string(value));
}

/// Of tags that a photo has more than once, as PNG files of some programs have all of them, keeps
/// the last, as the dictionary does. In a maker's note that is there once they may mean something.
void keepOneOfEach(Exiv2::ExifData& exif) {
  const bool hasOneNote = std::ranges::count(exif, "MakerNote", &Exiv2::Exifdatum::tagName) < 2;
  std::set<std::string> seen;
  for (auto entry = exif.end(); entry != exif.begin();) {
    --entry;
    if (hasOneNote && Exiv2::ExifTags::isMakerGroup(entry->groupName())) continue;
    if (!seen.insert(entry->key()).second) entry = exif.erase(entry);
  }
}

/// The metadata to write, changed to be true of the new picture.
MetadataCarrier contentFor(const ImageMetadata& metadata, int width, int height) {
  MetadataCarrier content = *metadata.carrier();
  eraseWhere(content.exif, describesStorage);
  keepOneOfEach(content.exif);
  if (!content.exif.empty()) {
    // A short by its standard; readers take other types for no orientation.
    content.exif["Exif.Image.Orientation"] = std::uint16_t{1};
    content.exif["Exif.Photo.PixelXDimension"] = static_cast<std::uint32_t>(width);
    content.exif["Exif.Photo.PixelYDimension"] = static_cast<std::uint32_t>(height);
  }
  if (isTurned(metadata, width, height)) {
    exchange(content.exif, "Exif.Image.XResolution", "Exif.Image.YResolution");
    exchange(content.exif, "Exif.Photo.FocalPlaneXResolution", "Exif.Photo.FocalPlaneYResolution");
  }
  eraseWhere(content.xmp, [](const Exiv2::Xmpdatum& entry) {
    return entry.key().starts_with("Xmp.xmp.Thumbnails");
  });
  setIfThere(content.xmp, "Xmp.tiff.Orientation", 1);
  setIfThere(content.xmp, "Xmp.tiff.ImageWidth", width);
  setIfThere(content.xmp, "Xmp.tiff.ImageLength", height);
  setIfThere(content.xmp, "Xmp.exif.PixelXDimension", width);
  setIfThere(content.xmp, "Xmp.exif.PixelYDimension", height);
  return content;
}

constexpr long kWorthDropping = 512;

template <typename Data>
typename Data::iterator largestOf(Data& data) {
  const auto found = std::max_element(
      data.begin(), data.end(), [](const auto& a, const auto& b) { return a.size() < b.size(); });
  return found != data.end() && found->size() > kWorthDropping ? found : data.end();
}

/// Leaves out the largest Exif entry; false if there is none worth leaving out.
bool dropLargestExif(MetadataCarrier& content) {
  const auto exif = largestOf(content.exif);
  if (exif == content.exif.end()) return false;
  const bool isMakerNote =
      exif->tagName() == "MakerNote" || Exiv2::ExifTags::isMakerGroup(exif->groupName());
  content.exif.erase(exif);
  if (isMakerNote) {
    eraseWhere(content.exif, [](const Exiv2::Exifdatum& entry) {
      return entry.tagName() == "MakerNote" || Exiv2::ExifTags::isMakerGroup(entry.groupName());
    });
  }
  return true;
}

/// Leaves out the largest entry of all; false if there is none worth leaving out.
bool dropLargest(MetadataCarrier& content) {
  const auto xmp = largestOf(content.xmp);
  const auto exif = largestOf(content.exif);
  const bool isXmpLarger =
      xmp != content.xmp.end() && (exif == content.exif.end() || xmp->size() > exif->size());
  if (!isXmpLarger) return dropLargestExif(content);
  content.xmp.erase(xmp);
  return true;
}

/// A JPEG's Exif is one segment of 64 KB. What is larger the library would thin out by itself,
/// every large entry at once, so the largest go here, one by one, until the rest fits.
void fitIntoSegment(MetadataCarrier& content) {
  constexpr long kSegment = 65'000;
  constexpr long kDirectoryEntry = 12;
  const auto size = [&content] {
    long total = 0;
    for (const Exiv2::Exifdatum& entry : content.exif) total += entry.size() + kDirectoryEntry;
    return total;
  };
  while (size() > kSegment && dropLargestExif(content)) {
  }
}

Exiv2::Image::AutoPtr opened(const std::vector<std::uint8_t>& bytes) {
  Exiv2::Image::AutoPtr image =
      Exiv2::ImageFactory::open(bytes.data(), static_cast<long>(bytes.size()));
  image->readMetadata();
  return image;
}

std::vector<std::uint8_t> written(const std::vector<std::uint8_t>& bytes, FileFormat format,
                                  const MetadataCarrier& content) {
  const Exiv2::Image::AutoPtr image = opened(bytes);
  Exiv2::ExifData exif = content.exif;
  if (format == FileFormat::tiff) {
    // How the new file's pixels are stored stands among its entries.
    for (const Exiv2::Exifdatum& entry : image->exifData()) {
      if (describesStorage(entry)) exif.add(entry);
    }
  } else if (content.byteOrder != Exiv2::invalidByteOrder) {
    image->setByteOrder(content.byteOrder);
  }
  image->setExifData(exif);
  image->setIptcData(content.iptc);
  image->setXmpData(content.xmp);
  if (format == FileFormat::jpeg && !content.comment.empty()) image->setComment(content.comment);
  image->writeMetadata();

  Exiv2::BasicIo& io = image->io();
  io.open();
  std::vector<std::uint8_t> result(io.size());
  if (io.read(result.data(), static_cast<long>(result.size())) !=
      static_cast<long>(result.size())) {
    throw Exiv2::Error(Exiv2::kerFailedToReadImageData);
  }
  return result;
}

}  // namespace

Result<std::vector<std::uint8_t>> withMetadata(std::vector<std::uint8_t> bytes, FileFormat format,
                                               const ImageMetadata& metadata) {
  if (factsOf(format).metadata == MetadataPlace::nowhere || metadata.carrier() == nullptr) {
    return bytes;
  }
  if (!initialiseImaging()) return Error{"the picture libraries cannot be started"};
  const auto lock = lockExiv2();
  try {
    MetadataCarrier content;
    {
      const Exiv2::Image::AutoPtr image = opened(bytes);
      content = contentFor(metadata, image->pixelWidth(), image->pixelHeight());
    }
    if (format == FileFormat::jpeg) fitIntoSegment(content);
    for (;;) {
      try {
        return written(bytes, format, content);
      } catch (const Exiv2::AnyError&) {
        if (!dropLargest(content)) throw;
      }
    }
  } catch (const std::exception& failure) {
    return Error{std::string("the metadata cannot be written (") + failure.what() + ")"};
  }
}

EncodeOptions encodeOptionsFor(const ImageMetadata& metadata, int width, int height) {
  EncodeOptions options;
  double across = metadata.valueOf<double>("DPIWidth").value_or(0.0);
  double down = metadata.valueOf<double>("DPIHeight").value_or(0.0);
  if (isTurned(metadata, width, height)) std::swap(across, down);
  if (across > 0.0 && down > 0.0) options.resolution = {across, down};
  return options;
}

Result<std::vector<std::uint8_t>> encodeImageWithMetadata(const Bitmap& bitmap,
                                                          const ColorProfile& profile,
                                                          FileFormat format,
                                                          const ImageMetadata& metadata) {
  auto bytes = encodeImage(bitmap, profile, format,
                           encodeOptionsFor(metadata, bitmap.width(), bitmap.height()));
  return bytes ? withMetadata(std::move(bytes).value(), format, metadata) : std::move(bytes);
}

}  // namespace velmara
