#include "session/export_formats.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <iterator>
#include <string_view>
#include <utility>

namespace velmara {
namespace {

struct KnownFormat {
  std::string_view lower;
  std::string_view upper;
  std::string_view title;
  FileFormat writer;
};

constexpr std::string_view kJpegTitle = "JPEG (*.jpg)";

// In the starting order of the popup; "jpg" is another spelling of its first.
constexpr std::array<KnownFormat, 5> kFormats = {{
    {"jpeg", "JPEG", kJpegTitle, FileFormat::jpeg},
    {"tiff", "TIFF", "Tiff (*.tiff)", FileFormat::tiff},
    {"bmp", "BMP", "BMP (*.bmp)", FileFormat::bmp},
    {"gif", "GIF", "GIF (*.gif)", FileFormat::gif},
    {"png", "PNG", "PNG (*.png)", FileFormat::png},
}};
constexpr std::string_view kShortJpeg = "jpg";

bool isShortJpeg(std::string_view extension) {
  return extension == kShortJpeg || extension == "JPG";
}

const KnownFormat* knownFormat(std::string_view extension) {
  if (isShortJpeg(extension)) return kFormats.data();
  const auto* found = std::find_if(kFormats.begin(), kFormats.end(), [&](const KnownFormat& f) {
    return f.lower == extension || f.upper == extension;
  });
  return found == kFormats.end() ? nullptr : found;
}

std::string lowered(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return text;
}

}  // namespace

ExportFormats exportFormatsFor(const std::string& fileExtension) {
  std::array<KnownFormat, kFormats.size()> ordered = kFormats;
  if (const KnownFormat* own = knownFormat(fileExtension)) {
    const auto place = ordered.begin() + std::distance(kFormats.data(), own);
    std::rotate(ordered.begin(), place, std::next(place));
  }
  if (isShortJpeg(fileExtension)) ordered.front().lower = kShortJpeg;
  ExportFormats formats;
  for (const KnownFormat& format : ordered) {
    formats.arrformatsSupportedByIM.emplace_back(format.lower);
    formats.titles.emplace_back(format.title);
  }
  return formats;
}

bool titleHasQuality(const std::string& title) {
  return title == kJpegTitle;
}

bool formatHasQuality(const std::string& format) {
  return format == kShortJpeg || format == kFormats.front().lower;
}

std::vector<std::string> allowedTypesAt(const ExportFormats& formats, std::size_t popupIndex) {
  const auto& list = formats.arrformatsSupportedByIM;
  if (popupIndex >= list.size()) return {};
  return {list[popupIndex]};
}

std::optional<FileFormat> writerFor(const std::string& format) {
  const KnownFormat* known = knownFormat(format);
  return known == nullptr ? std::nullopt : std::optional(known->writer);
}

ExportChoice exportChoice(const ExportFormats& formats, const std::string& fileTypeToExportImage,
                          const std::string& photoExtension) {
  const auto& list = formats.arrformatsSupportedByIM;
  const auto indexOf = [&](const std::string& format) -> std::optional<std::size_t> {
    const auto found = std::find(list.begin(), list.end(), format);
    if (found == list.end()) return std::nullopt;
    return static_cast<std::size_t>(std::distance(list.begin(), found));
  };
  std::string format =
      fileTypeToExportImage.empty() ? lowered(photoExtension) : fileTypeToExportImage;
  if (!indexOf(format)) format = kShortJpeg;
  const auto index = indexOf(format);
  return {std::move(format), index};
}

std::optional<FileFormat> writerFor(const ExportFormats& formats, const ExportChoice& choice) {
  const auto& list = formats.arrformatsSupportedByIM;
  if (!choice.index || *choice.index >= list.size()) return std::nullopt;
  return writerFor(list[*choice.index]);
}

}  // namespace velmara
