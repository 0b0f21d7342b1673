#include "session/export_formats.h"

#include <algorithm>
#include <cctype>
#include <iterator>
#include <string_view>
#include <utility>

namespace velmara {
namespace {

constexpr std::string_view kJpeg = "jpeg";
constexpr std::string_view kShortJpeg = "jpg";

std::string inCase(std::string text, int (*convert)(int)) {
  for (char& c : text) c = static_cast<char>(convert(static_cast<unsigned char>(c)));
  return text;
}

// The format of a word in lower or in upper case, but not in both; null for any other.
const FormatFacts* formatOfWord(const std::string& text) {
  const std::string word = inCase(text, std::tolower);
  if (text.empty() || (text != word && text != inCase(word, std::toupper))) return nullptr;
  for (const FormatFacts& facts : fileFormats()) {
    if (facts.word == (word == kShortJpeg ? kJpeg : word)) return &facts;
  }
  return nullptr;
}

}  // namespace

ExportFormats exportFormatsFor(const std::string& fileExtension) {
  std::vector<const FormatFacts*> ordered;
  for (const FormatFacts& facts : fileFormats()) {
    if (!facts.word.empty()) ordered.push_back(&facts);
  }
  if (const auto own = std::ranges::find(ordered, formatOfWord(fileExtension));
      own != ordered.end()) {
    std::rotate(ordered.begin(), own, std::next(own));
  }
  ExportFormats formats;
  for (const FormatFacts* facts : ordered) {
    formats.arrformatsSupportedByIM.emplace_back(facts->word);
    formats.titles.emplace_back(facts->title);
  }
  if (inCase(fileExtension, std::tolower) == kShortJpeg && formatOfWord(fileExtension) != nullptr) {
    formats.arrformatsSupportedByIM.front() = kShortJpeg;
  }
  return formats;
}

bool titleHasQuality(const std::string& title) {
  return title == factsOf(FileFormat::jpeg).title;
}

bool formatHasQuality(const std::string& format) {
  return format == kShortJpeg || format == kJpeg;
}

std::vector<std::string> allowedTypesAt(const ExportFormats& formats, std::size_t popupIndex) {
  const auto& list = formats.arrformatsSupportedByIM;
  if (popupIndex >= list.size()) return {};
  return {list[popupIndex]};
}

std::optional<FileFormat> writerFor(const std::string& format) {
  const FormatFacts* known = formatOfWord(format);
  return known == nullptr ? std::nullopt : std::optional(known->format);
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
      fileTypeToExportImage.empty() ? inCase(photoExtension, std::tolower) : fileTypeToExportImage;
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
