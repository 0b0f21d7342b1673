#include "imaging/metadata_carrier.h"

#include <QString>
#include <QUtf8StringView>

#include <algorithm>
#include <cmath>
#include <optional>
#include <string_view>

namespace velmara {
namespace {

constexpr std::size_t kLongestText = 4096;
constexpr long kMostNumbers = 64;

// Exif is ASCII by its standard and Latin-1 in practice, where it is not UTF-8.
std::string readableText(std::string text) {
  text.resize(std::min(text.size(), text.find('\0')));
  while (!text.empty() && text.back() == ' ') text.pop_back();
  const bool isUtf8 = QUtf8StringView(text.data(), text.size()).isValidUtf8();
  return isUtf8 ? text : QString::fromLatin1(text).toStdString();
}

std::optional<MetadataValue> numberAt(const Exiv2::Value& value, long index) {
  switch (value.typeId()) {
    case Exiv2::unsignedRational:
    case Exiv2::signedRational: {
      const Exiv2::Rational ratio = value.toRational(index);
      if (ratio.second == 0) return std::nullopt;
      return MetadataValue(static_cast<double>(ratio.first) / ratio.second);
    }
    case Exiv2::tiffFloat:
    case Exiv2::tiffDouble: {
      const double real = value.toFloat(index);
      return std::isfinite(real) ? std::optional(MetadataValue(real)) : std::nullopt;
    }
    case Exiv2::unsignedLong:
      // Exiv2 hands an unsigned value out as a signed one.
      return MetadataValue(std::int64_t{static_cast<std::uint32_t>(value.toLong(index))});
    default:
      return MetadataValue(std::int64_t{value.toLong(index)});
  }
}

std::optional<MetadataValue> valueOf(const Exiv2::Exifdatum& entry) {
  if (entry.size() == 0) return std::nullopt;
  const Exiv2::Value& value = entry.value();
  const Exiv2::TypeId type = value.typeId();
  const auto* comment = dynamic_cast<const Exiv2::CommentValue*>(&value);
  if (type == Exiv2::asciiString || type == Exiv2::string || comment != nullptr) {
    if (static_cast<std::size_t>(value.size()) > kLongestText) return std::nullopt;
    return MetadataValue(readableText(comment != nullptr ? comment->comment() : value.toString()));
  }
  if (value.count() > kMostNumbers) return std::nullopt;
  if (value.count() == 1) return numberAt(value, 0);
  MetadataList list;
  for (long i = 0; i < value.count(); ++i) {
    if (auto number = numberAt(value, i)) list.push_back(std::move(*number));
  }
  return MetadataValue(std::move(list));
}

// Degrees, minutes and seconds as one number.
std::optional<MetadataValue> degreesOf(const MetadataValue& value) {
  const MetadataList* parts = value.list();
  if (parts == nullptr || parts->empty()) return std::nullopt;
  double degrees = 0.0;
  double unit = 1.0;
  for (const MetadataValue& part : *parts) {
    if (part.real() == nullptr) return std::nullopt;
    degrees += *part.real() / unit;
    unit *= 60.0;
  }
  return MetadataValue(degrees);
}

std::string_view groupKeyOf(const std::string& group) {
  if (group == "Image") return "{TIFF}";
  if (group == "Photo") return "{Exif}";
  if (group == "GPSInfo") return "{GPS}";
  return {};
}

MetadataDictionary& groupIn(MetadataDictionary& dictionary, std::string_view key) {
  auto [item, added] = dictionary.try_emplace(std::string(key), MetadataDictionary{});
  return std::get<MetadataDictionary>(item->second.content);
}

void addExif(const Exiv2::ExifData& exif, MetadataDictionary& dictionary) {
  for (const Exiv2::Exifdatum& entry : exif) {
    const std::string_view group = groupKeyOf(entry.groupName());
    if (group.empty() || describesStorage(entry) || entry.tagName() == "MakerNote") continue;
    std::optional<MetadataValue> value = valueOf(entry);
    if (!value) continue;
    std::string key = entry.tagName();
    if (group == "{GPS}") {
      if (key.starts_with("GPS")) key.erase(0, 3);
      if (key.ends_with("Latitude") || key.ends_with("Longitude")) value = degreesOf(*value);
      if (!value) continue;
    }
    if (group == "{TIFF}" && key == "Orientation" && value->integer() != nullptr) {
      dictionary.insert_or_assign("Orientation", *value);
    }
    groupIn(dictionary, group).insert_or_assign(std::move(key), std::move(*value));
  }
}

// The names that pictures' dictionaries use where Exiv2 shortens the standard's.
std::string iptcKeyOf(const std::string& tag) {
  if (tag == "Caption") return "Caption/Abstract";
  if (tag == "CountryName") return "Country/PrimaryLocationName";
  if (tag == "ProvinceState") return "Province/State";
  if (tag == "Copyright") return "CopyrightNotice";
  return tag;
}

void addIptc(const Exiv2::IptcData& iptc, MetadataDictionary& dictionary) {
  for (const Exiv2::Iptcdatum& entry : iptc) {
    if (entry.groupName() != "Application2") continue;
    if (static_cast<std::size_t>(entry.size()) > kLongestText) continue;
    MetadataValue text(readableText(entry.toString()));
    MetadataDictionary& group = groupIn(dictionary, "{IPTC}");
    const bool repeats = Exiv2::IptcDataSets::dataSetRepeatable(entry.tag(), entry.record());
    const std::string key = iptcKeyOf(entry.tagName());
    if (!repeats) {
      group.insert_or_assign(key, std::move(text));
      continue;
    }
    auto [item, added] = group.try_emplace(key, MetadataList{});
    std::get<MetadataList>(item->second.content).push_back(std::move(text));
  }
}

void addXmp(const Exiv2::XmpData& xmp, MetadataDictionary& dictionary) {
  for (const Exiv2::Xmpdatum& entry : xmp) {
    if (static_cast<std::size_t>(entry.size()) > kLongestText) continue;
    groupIn(dictionary, "{XMP}")
        .insert_or_assign(entry.groupName() + ":" + entry.tagName(),
                          MetadataValue(readableText(entry.toString())));
  }
}

// How the samples of a RAW become colours, and what a DNG keeps of the file it was made of. With
// these another file would pass for a RAW.
bool describesMosaic(std::uint16_t tag) {
  constexpr std::uint16_t kTrueOfAnyPicture[] = {
      0xc614, 0xc615, 0xc62f, 0xc630,  // names and number of the camera, lens
  };
  const bool isOfDng = tag >= 0xc612 && tag <= 0xcd4f;
  const bool isOfMosaic = tag == 0x828d || tag == 0x828e || tag == 0x9216;  // filters, TIFF/EP
  return isOfMosaic ||
         (isOfDng && std::ranges::find(kTrueOfAnyPicture, tag) == std::end(kTrueOfAnyPicture));
}

}  // namespace

bool describesStorage(const Exiv2::Exifdatum& entry) {
  const std::string group = entry.groupName();
  if (group == "Thumbnail" || group.starts_with("SubImage") || group.starts_with("SubThumb") ||
      group == "Image2" || group == "Image3" || group == "MpfInfo" || group == "PanasonicRaw") {
    return true;
  }
  if (group == "Photo") return entry.tag() == 0xa005;  // InteroperabilityTag
  if (group != "Image") return false;
  if (describesMosaic(entry.tag())) return true;
  constexpr std::uint16_t kTags[] = {
      0x00fe, 0x00ff,                                  // NewSubfileType, SubfileType
      0x0100, 0x0101, 0x0102, 0x0103, 0x0106,          // sizes, depth, compression, kind of colour
      0x0107, 0x0108, 0x0109, 0x010a,                  // thresholds, cells, fill order
      0x0111, 0x0115, 0x0116, 0x0117, 0x0118, 0x0119,  // strips, samples
      0x011c, 0x0120, 0x0121, 0x0122, 0x0123, 0x0124, 0x0125,  // layout, gray response, fax
      0x0129, 0x012d, 0x013d, 0x0140, 0x0141,  // page, transfer, predictor, colour map, halftone
      0x0142, 0x0143, 0x0144, 0x0145, 0x014a,  // tiles, SubIFDs
      0x014c, 0x014d, 0x014e, 0x0150, 0x0152, 0x0153, 0x0154, 0x0155,  // inks, extra samples
      0x015b, 0x0200, 0x0201, 0x0202, 0x0203, 0x0205, 0x0206, 0x0207, 0x0208, 0x0209,  // JPEG
      0x0211, 0x0212, 0x0213, 0x0214,                                                  // YCbCr
      0x02bc, 0x83bb, 0x8649, 0x8769, 0x8773, 0x8825, 0x935c,  // packets, pointers, profile
  };
  return std::ranges::find(kTags, entry.tag()) != std::end(kTags);
}

void addMetadataGroups(const MetadataCarrier& carrier, MetadataDictionary& dictionary) {
  addExif(carrier.exif, dictionary);
  addIptc(carrier.iptc, dictionary);
  addXmp(carrier.xmp, dictionary);
}

}  // namespace velmara
