#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "imaging/picture_file.h"

namespace velmara {

struct MetadataValue;

/// Keys in alphabetical order.
using MetadataDictionary = std::map<std::string, MetadataValue>;
using MetadataList = std::vector<MetadataValue>;

/// One property of a picture: a truth value, a number, a text (UTF-8), a list or a group of further
/// properties.
struct MetadataValue {
  /// One of these types.
  using Content =
      std::variant<bool, std::int64_t, double, std::string, MetadataList, MetadataDictionary>;
  /// The value itself.
  Content content;

  /// A property of that type, implicit, so that dictionaries can be written as lists.
  MetadataValue(bool value) : content(value) {}                           // NOLINT
  MetadataValue(int value) : content(std::int64_t{value}) {}              // NOLINT
  MetadataValue(std::int64_t value) : content(value) {}                   // NOLINT
  MetadataValue(double value) : content(value) {}                         // NOLINT
  MetadataValue(const char* value) : content(std::string(value)) {}       // NOLINT
  MetadataValue(std::string value) : content(std::move(value)) {}         // NOLINT
  MetadataValue(MetadataList value) : content(std::move(value)) {}        // NOLINT
  MetadataValue(MetadataDictionary value) : content(std::move(value)) {}  // NOLINT

  /// The value as this type, or null if it is of another.
  const bool* boolean() const { return std::get_if<bool>(&content); }
  const std::int64_t* integer() const { return std::get_if<std::int64_t>(&content); }
  const double* real() const { return std::get_if<double>(&content); }
  const std::string* text() const { return std::get_if<std::string>(&content); }
  const MetadataList* list() const { return std::get_if<MetadataList>(&content); }
  const MetadataDictionary* group() const { return std::get_if<MetadataDictionary>(&content); }
};

struct MetadataCarrier;

/// The properties of a picture: an ordinary dictionary to look things up in, and with it, not to be
/// seen, all that is needed to write the same metadata into another file. A value, cheap to copy;
/// any thread may read it.
///
/// Keys at the top: "PixelWidth", "PixelHeight" (integers), "Depth" (integer, bits a sample),
/// "ColorModel" ("Gray", "RGB", "CMYK" or "Lab"), "HasAlpha" (truth value), "DPIWidth", "DPIHeight"
/// (reals), "Orientation" (integer), "ProfileName" (text), each where the file has it, and the
/// groups "{Exif}", "{TIFF}", "{GPS}", "{IPTC}", "{XMP}", where there is anything in them. The keys
/// in a group are the standards' own tag names: "FNumber", "Make", "Latitude", "Keywords".
class ImageMetadata {
 public:
  ImageMetadata() = default;
  /// What a reader found: the dictionary, and what is carried along unseen (null for nothing).
  ImageMetadata(MetadataDictionary dictionary, std::shared_ptr<const MetadataCarrier> carrier)
      : dictionary_(std::move(dictionary)), carrier_(std::move(carrier)) {}

  /// All of it, as told above.
  const MetadataDictionary& dictionary() const { return dictionary_; }
  /// The value of a key at the top, or null.
  const MetadataValue* find(const std::string& key) const;
  /// The value of a key at the top, if there is one of this type.
  template <typename T>
  std::optional<T> valueOf(const std::string& key) const {
    const MetadataValue* value = find(key);
    const T* found = value != nullptr ? std::get_if<T>(&value->content) : nullptr;
    return found != nullptr ? std::optional(*found) : std::nullopt;
  }
  /// The value of a key in a group such as "{Exif}", or null.
  const MetadataValue* find(const std::string& group, const std::string& key) const;

  /// "Orientation" as the file states it, whatever number that is; nothing if it does not say.
  std::optional<int> orientation() const {
    const auto value = valueOf<std::int64_t>("Orientation");
    return value ? std::optional(static_cast<int>(*value)) : std::nullopt;
  }

  /// What the writer of metadata takes over; null if there is nothing to take over.
  const std::shared_ptr<const MetadataCarrier>& carrier() const { return carrier_; }

 private:
  MetadataDictionary dictionary_;
  std::shared_ptr<const MetadataCarrier> carrier_;
};

/// The properties of the first picture of a file; nothing if it is none of the kinds that can be
/// read (see readImage) or its headers are damaged. Metadata that is damaged is left out where it
/// cannot be understood. Pixels are not decoded. Any thread.
std::optional<ImageMetadata> readMetadata(const std::string& path);
/// The same of a file that is open.
std::optional<ImageMetadata> readMetadata(const PictureFile& file);

}  // namespace velmara
