#pragma once

#include <cmath>
#include <cstdint>
#include <map>
#include <string>
#include <utility>

#include "imaging/picture_files.h"

namespace velmara::testing_support {

/// One directory of a TIFF (little-endian) under construction.
class TiffEntries {
 public:
  TiffEntries& text(unsigned tag, const std::string& value) { return add(tag, 2, 1, value + '\0'); }
  TiffEntries& bytes(unsigned tag, const std::string& value) { return add(tag, 1, 1, value); }
  TiffEntries& shorts(unsigned tag, const std::vector<unsigned>& values) {
    std::string data;
    for (const unsigned value : values) data += littleEndian(value, 2);
    return add(tag, 3, 2, data);
  }
  TiffEntries& number(unsigned tag, std::size_t value) {
    return add(tag, 4, 4, littleEndian(value, 4));
  }
  /// Ratios; signed ones have the same bytes.
  TiffEntries& ratios(unsigned tag, unsigned type, const std::vector<double>& values) {
    std::string data;
    for (const double value : values) {
      const auto numerator = static_cast<std::int32_t>(std::lround(value * 10000.0));
      data += littleEndian(static_cast<std::uint32_t>(numerator), 4) + littleEndian(10000, 4);
    }
    return add(tag, type, 8, data);
  }

  /// The directory as it stands at an offset of the file, long values behind it.
  std::string at(std::size_t offset) const {
    std::string table = littleEndian(entries_.size(), 2);
    std::string values;
    const std::size_t valuesAt = offset + 2 + entries_.size() * 12 + 4;
    for (const auto& [tag, entry] : entries_) {
      const bool isInside = entry.data.size() <= 4;
      table += littleEndian(tag, 2) + littleEndian(entry.type, 2) +
               littleEndian(entry.data.size() / entry.unit, 4);
      table += isInside ? entry.data + std::string(4 - entry.data.size(), '\0')
                        : littleEndian(valuesAt + values.size(), 4);
      if (!isInside) values += entry.data + std::string(entry.data.size() % 2, '\0');
    }
    return table + std::string(4, '\0') + values;
  }

 private:
  struct Entry {
    unsigned type;
    std::size_t unit;
    std::string data;
  };
  TiffEntries& add(unsigned tag, unsigned type, std::size_t unit, std::string data) {
    entries_[tag] = {type, unit, std::move(data)};
    return *this;
  }
  std::map<unsigned, Entry> entries_;
};

/// A camera's RAW of four flat fields, whose sensor has an sRGB of its own with too little red and
/// blue: the white balance puts that right.
struct Dng {
  int width = 96, height = 64;
  unsigned orientation = 1;
  double baselineExposure = 0.0;
  /// What the header says instead, if not 0.
  unsigned statedWidth = 0, statedHeight = 0;
};

/// The fields as they should come out: top left, top right, bottom left, bottom right.
inline constexpr int kDngFields[4][3] = {
    {200, 60, 40}, {60, 180, 80}, {50, 80, 190}, {120, 120, 120}};

inline std::string dngOf(const Dng& dng) {
  constexpr double kNeutral[3] = {0.5, 1.0, 0.625};
  constexpr double kXyzToSrgb[9] = {3.2405, -1.5371, -0.4985, -0.9693, 1.8760,
                                    0.0416, 0.0556,  -0.2040, 1.0572};
  constexpr int kBlack = 512, kWhite = 15000;
  std::string mosaic;
  for (int y = 0; y < dng.height; ++y) {
    for (int x = 0; x < dng.width; ++x) {
      const int c = y % 2 + x % 2;  // red, green; green, blue
      const int field = (y < dng.height / 2 ? 0 : 2) + (x < dng.width / 2 ? 0 : 1);
      const double light = std::pow((kDngFields[field][c] / 255.0 + 0.055) / 1.055, 2.4);
      mosaic += littleEndian(
          static_cast<unsigned>(std::lround(kBlack + light * kNeutral[c] * (kWhite - kBlack))), 2);
    }
  }
  std::vector<double> matrix;
  for (int i = 0; i < 9; ++i) matrix.push_back(kXyzToSrgb[i] * kNeutral[i / 3]);

  TiffEntries exif;
  exif.ratios(33434, 5, {0.02}).ratios(33437, 5, {4.0}).shorts(34855, {1600});
  exif.text(36867, "2024:05:06 07:08:09").text(42036, "A lens").shorts(40961, {65535});
  TiffEntries top;
  const auto written = [&](std::size_t exifAt, std::size_t mosaicAt) {
    top.number(254, 0).number(256, dng.statedWidth != 0 ? dng.statedWidth : dng.width);
    top.number(257, dng.statedHeight != 0 ? dng.statedHeight : dng.height).shorts(258, {16});
    top.shorts(259, {1}).shorts(262, {32803}).text(271, "Maker").text(272, "Camera");
    top.number(273, mosaicAt).shorts(274, {dng.orientation}).shorts(277, {1});
    top.number(278, 0xffff).number(279, mosaic.size()).number(34665, exifAt);
    top.shorts(33421, {2, 2}).bytes(33422, std::string("\0\1\1\2", 4));
    top.bytes(50706, std::string("\1\4\0\0", 4)).text(50708, "Maker Camera");
    top.shorts(50714, {kBlack}).shorts(50717, {kWhite}).ratios(50721, 10, matrix);
    top.ratios(50728, 5, {kNeutral[0], kNeutral[1], kNeutral[2]}).shorts(50778, {21});
    top.ratios(50730, 10, {dng.baselineExposure});
    return top.at(8);
  };
  const std::size_t exifAt = 8 + written(0, 0).size();
  const std::size_t mosaicAt = exifAt + exif.at(exifAt).size();
  return std::string("II*\0", 4) + littleEndian(8, 4) + written(exifAt, mosaicAt) +
         exif.at(exifAt) + mosaic;
}

}  // namespace velmara::testing_support
