#include "cli/output.h"

#include <filesystem>
#include <string_view>
#include <sys/stat.h>

namespace velmara::cli {
namespace {

namespace fs = std::filesystem;

std::string extensionFor(FileFormat format) {
  return "." + std::string(factsOf(format).extensions.front());
}

std::optional<FileIdentity> identityOf(const std::string& path) {
  struct stat status {};
  if (::stat(path.c_str(), &status) != 0) return std::nullopt;
  return FileIdentity{status.st_dev, status.st_ino};
}

}  // namespace

std::optional<FileFormat> formatForPath(const std::string& path) {
  const std::string file = fs::path(path).filename().string();
  const auto dot = file.rfind('.');
  if (dot == std::string::npos) return std::nullopt;
  return exportFormatForExtension(std::string_view(file).substr(dot + 1));
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

OutputFiles::OutputFiles(const std::vector<std::string>& inputs, bool mayReplace)
    : mayReplace_(mayReplace) {
  for (const std::string& input : inputs) {
    if (const auto identity = identityOf(input)) inputs_.insert(*identity);
  }
}

Status OutputFiles::check(const std::string& path) const {
  const auto identity = path == "-" ? std::nullopt : identityOf(path);
  if (!identity) return Done{};
  if (inputs_.contains(*identity)) return Error{"an input is never replaced: " + path};
  if (written_.contains(*identity)) return Error{"two photos would be written to " + path};
  if (!mayReplace_) return Error{path + " is there already (--force replaces it)"};
  return Done{};
}

void OutputFiles::wasWritten(const std::string& path) {
  if (const auto identity = identityOf(path)) written_.insert(*identity);
}

}  // namespace velmara::cli
