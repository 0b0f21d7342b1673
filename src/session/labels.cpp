#include "session/labels.h"

#include <QCoreApplication>
#include <QLocale>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <utility>

#include "base/fixed_text.h"
#include "imaging/rotate_with_exif.h"

namespace velmara {
namespace {

// The strongest choice is ten of ten.
constexpr int kStrengthOffset = 2;

}  // namespace

std::string percentLabel(double percent) {
  return std::to_string(std::llrint(percent)) + " %";
}

std::string dimensionsLabel(const PhotoFile& photo) {
  std::int64_t width = photo.width;
  std::int64_t height = photo.height;
  if (exchangesSides(photo.orientation().value_or(1))) std::swap(width, height);
  return std::to_string(width) + " x " + std::to_string(height) + " px";
}

std::string sizeLabel(const std::string& fileSize) {
  double bytes = 0.0;
  std::from_chars(fileSize.data(), fileSize.data() + fileSize.size(), bytes);
  if (bytes < 1000.0) return "Size: " + fixedText(bytes, 0) + " KB";
  if (bytes < 1'000'000.0) return "Size: " + fixedText(bytes / 1000.0, 0) + " KB";
  return "Size: " + fixedText(bytes / 1'000'000.0, 2) + " MB";
}

std::string pathLabel(const std::string& filePath) {
  return "Path : " + filePath;
}

int strengthOfTen(int sigmaVal) {
  return std::clamp(sigmaVal - kStrengthOffset, 1, 10);
}

std::string strengthLabel(int sigmaVal) {
  return QCoreApplication::translate("Strength", "Strength %1 of 10")
      .arg(strengthOfTen(sigmaVal))
      .toStdString();
}

std::string deepStrengthLabel(float strength) {
  return QCoreApplication::translate("Strength", "Noise × %1")
      .arg(QLocale().toString(double{strength}, 'f', 1))
      .toStdString();
}

std::string noNoiseLabel() {
  return QCoreApplication::translate("Strength", "No noise found").toStdString();
}

}  // namespace velmara
