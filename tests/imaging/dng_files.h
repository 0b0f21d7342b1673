#pragma once

#include <cmath>
#include <cstdint>
#include <string>
#include <vector>

#include "imaging/picture_files.h"

namespace velmara::testing_support {

/// An entry of a TIFF's directory: a text, or values of a type.
struct TiffEntry {
  unsigned tag;
  enum Type : unsigned { kByte = 1, kText, kShort, kLong, kRatio, kSignedRatio = 10 } type;
  std::vector<double> values = {};
  std::string text = {};
};

/// A directory as it stands at an offset of a little-endian file, long values behind it.
inline std::string tiffDirectory(std::size_t offset, const std::vector<TiffEntry>& entries) {
  constexpr std::size_t kUnits[] = {0, 1, 1, 2, 4, 8, 0, 0, 0, 0, 8};
  std::string table = littleEndian(entries.size(), 2);
  std::string values;
  for (const TiffEntry& entry : entries) {
    const std::size_t unit = kUnits[entry.type];
    std::string data = entry.type == TiffEntry::kText ? entry.text + '\0' : std::string();
    for (const double value : entry.values) {
      const auto number = std::lround(value * (unit == 8 ? 10000.0 : 1.0));
      data +=
          littleEndian(static_cast<std::uint64_t>(number), unit == 8 ? 4 : static_cast<int>(unit));
      if (unit == 8) data += littleEndian(10000, 4);
    }
    table += littleEndian(entry.tag, 2) + littleEndian(entry.type, 2) +
             littleEndian(data.size() / unit, 4);
    data.resize(data.size() < 4 ? 4 : data.size() + data.size() % 2);
    const std::size_t at = offset + 2 + entries.size() * 12 + 4 + values.size();
    table += data.size() == 4 ? data : littleEndian(at, 4);
    if (data.size() > 4) values += data;
  }
  return table + std::string(4, '\0') + values;
}

/// A camera's RAW of four flat fields, whose sensor has an sRGB of its own with too little red and
/// blue: the white balance puts that right.
struct Dng {
  int width = 96, height = 64;
  int orientation = 1;
  double baselineExposure = 0.0;
  /// What the header says instead, if not 0.
  int statedSide = 0;
  /// A JPEG to hold the samples, three a pixel, in place of the fields.
  std::string jpeg = {};
  /// Whether the samples are told to be one tile and not one strip.
  bool isTiled = false;
};

/// The fields as they should come out: top left, top right, bottom left, bottom right.
inline constexpr int kDngFields[4][3] = {
    {200, 60, 40}, {60, 180, 80}, {50, 80, 190}, {120, 120, 120}};

inline std::string dngOf(const Dng& dng) {
  using enum TiffEntry::Type;
  constexpr int kBlack = 512, kWhite = 15000;
  const std::vector<double> neutral = {0.5, 1.0, 0.625};
  std::vector<double> xyzToSensor = {3.2405, -1.5371, -0.4985, -0.9693, 1.8760,
                                     0.0416, 0.0556,  -0.2040, 1.0572};
  for (std::size_t i = 0; i < 9; ++i) xyzToSensor[i] *= neutral[i / 3];
  const bool isJpeg = !dng.jpeg.empty();
  std::string mosaic = dng.jpeg;
  for (int y = 0; y < dng.height && !isJpeg; ++y) {
    for (int x = 0; x < dng.width; ++x) {
      const int c = y % 2 + x % 2;  // red, green; green, blue
      const int field = (y < dng.height / 2 ? 0 : 2) + (x < dng.width / 2 ? 0 : 1);
      const double light = std::pow((kDngFields[field][c] / 255.0 + 0.055) / 1.055, 2.4);
      const double sample = kBlack + light * neutral[static_cast<unsigned>(c)] * (kWhite - kBlack);
      mosaic += littleEndian(static_cast<unsigned>(std::lround(sample)), 2);
    }
  }
  const double width = dng.statedSide != 0 ? dng.statedSide : dng.width;
  const double height = dng.statedSide != 0 ? dng.statedSide : dng.height;
  const double turn = dng.orientation, bits = isJpeg ? 8.0 : 16.0;
  const double bytes = static_cast<double>(mosaic.size());
  // clang-format off
  const auto top = [&](double exifAt, double mosaicAt) {
    std::vector<TiffEntry> entries = {
        {254, kLong, {0}}, {256, kLong, {width}}, {257, kLong, {height}}, {258, kShort, {bits}},
        {259, kShort, {isJpeg ? 34892.0 : 1.0}}, {262, kShort, {isJpeg ? 34892.0 : 32803.0}},
        {271, kText, {}, "Maker"}, {272, kText, {}, "Camera"}, {273, kLong, {mosaicAt}},
        {274, kShort, {turn}}, {277, kShort, {isJpeg ? 3.0 : 1.0}}, {278, kLong, {0xffff}},
        {279, kLong, {bytes}}, {33421, kShort, {2, 2}}, {33422, kByte, {0, 1, 1, 2}},
        {34665, kLong, {exifAt}}, {50706, kByte, {1, 4, 0, 0}}, {50708, kText, {}, "Maker Camera"},
        {50714, kShort, {isJpeg ? 0.0 : kBlack}}, {50717, kShort, {isJpeg ? 255.0 : kWhite}},
        {50721, kSignedRatio, xyzToSensor}, {50728, kRatio, neutral},
        {50730, kSignedRatio, {dng.baselineExposure}}, {50778, kShort, {21}}};
    for (TiffEntry& entry : entries) {
      if (dng.isTiled && entry.tag == 273) entry = {324, kLong, {mosaicAt}};
      if (dng.isTiled && entry.tag == 278) entry = {322, kLong, {width}};
      if (dng.isTiled && entry.tag == 279) entry = {325, kLong, {bytes}};
    }
    if (dng.isTiled) entries.push_back({323, kLong, {height}});
    std::ranges::sort(entries, {}, &TiffEntry::tag);
    return tiffDirectory(8, entries);
  };
  const std::size_t exifAt = 8 + top(0, 0).size();
  const std::string exif = tiffDirectory(exifAt, {
      {33434, kRatio, {0.02}}, {33437, kRatio, {4.0}}, {34855, kShort, {1600}},
      {36867, kText, {}, "2024:05:06 07:08:09"}, {40961, kShort, {65535}},
      {42036, kText, {}, "A lens"}});
  // clang-format on
  const auto start = static_cast<double>(exifAt);
  return std::string("II*\0", 4) + littleEndian(8, 4) +
         top(start, start + static_cast<double>(exif.size())) + exif + mosaic;
}

}  // namespace velmara::testing_support
