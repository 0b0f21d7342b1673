#include "cli/output_paths.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <filesystem>
#include <string_view>

namespace velmara::cli {
namespace {

namespace fs = std::filesystem;

struct FormatName {
  std::string_view extension;
  FileFormat format;
};
// The first extension of a format is the one that new files get.
constexpr std::array kExtensions{
    FormatName{"jpg", FileFormat::jpeg},  FormatName{"jpeg", FileFormat::jpeg},
    FormatName{"tiff", FileFormat::tiff}, FormatName{"tif", FileFormat::tiff},
    FormatName{"bmp", FileFormat::bmp},   FormatName{"gif", FileFormat::gif},
    FormatName{"png", FileFormat::png},
};

std::string lowerCase(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return text;
}

std::string extensionFor(FileFormat format) {
  for (const FormatName& name : kExtensions) {
    if (name.format == format) return "." + std::string(name.extension);
  }
  return {};
}

}  // namespace

std::optional<FileFormat> formatNamed(const std::string& name) {
  return formatForPath("." + name);
}

std::optional<FileFormat> formatForPath(const std::string& path) {
  const std::string file = fs::path(path).filename().string();
  const auto dot = file.rfind('.');
  if (dot == std::string::npos) return std::nullopt;
  const std::string extension = lowerCase(file.substr(dot + 1));
  for (const FormatName& name : kExtensions) {
    if (name.extension == extension) return name.format;
  }
  return std::nullopt;
}

OutputTarget outputTarget(const std::string& input, std::optional<FileFormat> inputFormat,
                          const DenoiseOptions& options) {
  if (options.output) {
    const auto byName = options.format ? options.format : formatForPath(*options.output);
    return {*options.output, byName.value_or(inputFormat.value_or(FileFormat::png))};
  }
  const FileFormat format = options.format.value_or(inputFormat.value_or(FileFormat::png));
  const fs::path source(input);
  const bool keepsExtension = formatForPath(input) == format;
  const std::string name = source.stem().string() + "-denoised" +
                           (keepsExtension ? source.extension().string() : extensionFor(format));
  const fs::path folder =
      options.outputFolder ? fs::path(*options.outputFolder) : source.parent_path();
  return {(folder / name).string(), format};
}

}  // namespace velmara::cli
