#include "imaging/raw_metadata.h"

#include <cmath>
#include <string>

namespace velmara {
namespace {

bool isMissing(const Exiv2::ExifData& exif, const char* key) {
  return exif.findKey(Exiv2::ExifKey(key)) == exif.end();
}

void addText(Exiv2::ExifData& exif, const char* key, const std::string& text) {
  if (!text.empty() && isMissing(exif, key)) exif[key] = text;
}

// A ratio of whole numbers that both fit, exact to a few millionths.
void addRatio(Exiv2::ExifData& exif, const char* key, double value) {
  constexpr double kMost = 1e9;
  if (value <= 0.0 || value > kMost || !isMissing(exif, key)) return;
  const double unit = value < 1.0 ? std::round(1.0 / value) : 0.0;
  const bool isFraction = unit > 0.0 && std::abs(value * unit - 1.0) < 1e-3 && unit < kMost;
  const double denominator = isFraction ? unit : value < 1000.0 ? 1000.0 : 1.0;
  exif[key] = Exiv2::URational(static_cast<std::uint32_t>(std::lround(value * denominator)),
                               static_cast<std::uint32_t>(denominator));
}

}  // namespace

void completeRawExif(const RawFacts& facts, Exiv2::ExifData& exif) {
  constexpr int kMostIso = 65535;
  constexpr std::uint16_t kSrgb = 1;
  exif["Exif.Image.Orientation"] = static_cast<std::uint16_t>(facts.orientation);
  exif["Exif.Photo.ColorSpace"] = kSrgb;
  // The other half of saying that the camera's own picture has another colour space.
  const auto index = exif.findKey(Exiv2::ExifKey("Exif.Iop.InteroperabilityIndex"));
  if (index != exif.end()) index->setValue("R98");

  addText(exif, "Exif.Image.Make", facts.make);
  addText(exif, "Exif.Image.Model", facts.model);
  addText(exif, "Exif.Photo.LensModel", facts.lens);
  addText(exif, "Exif.Photo.DateTimeOriginal", facts.taken);
  addRatio(exif, "Exif.Photo.ExposureTime", facts.seconds);
  addRatio(exif, "Exif.Photo.FNumber", facts.fNumber);
  addRatio(exif, "Exif.Photo.FocalLength", facts.focalLength);
  const char* const iso = "Exif.Photo.ISOSpeedRatings";
  if (facts.iso > 0 && facts.iso <= kMostIso && isMissing(exif, iso)) {
    exif[iso] = static_cast<std::uint16_t>(facts.iso);
  }
}

}  // namespace velmara
