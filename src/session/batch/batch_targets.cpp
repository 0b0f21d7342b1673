#include "session/batch/batch_targets.h"

#include <filesystem>
#include <string_view>
#include <sys/stat.h>

namespace velmara {
namespace {

namespace fs = std::filesystem;
using Existing = BatchNaming::Existing;

std::string extensionFor(FileFormat format) {
  return "." + std::string(factsOf(format).extensions.front());
}

std::optional<FileIdentity> identityOf(const std::string& path) {
  struct stat status {};
  if (::stat(path.c_str(), &status) != 0) return std::nullopt;
  return FileIdentity{status.st_dev, status.st_ino};
}

// One name for one file, whether or not it is there yet.
std::string onlyNameOf(const std::string& path) {
  std::error_code failure;
  // Absolute first: a name of a file that is not there yet would stay relative.
  const fs::path whole = fs::weakly_canonical(fs::absolute(path, failure), failure);
  return failure ? path : whole.string();
}

}  // namespace

std::optional<FileFormat> formatForPath(const std::string& path) {
  const std::string file = fs::path(path).filename().string();
  const auto dot = file.rfind('.');
  if (dot == std::string::npos) return std::nullopt;
  return exportFormatForExtension(std::string_view(file).substr(dot + 1));
}

PhotoOutput namedOutput(const BatchPhoto& photo, std::size_t index, std::size_t count,
                        std::optional<FileFormat> own, const BatchNaming& naming) {
  const bool mayReplace = naming.existing == Existing::replace;
  const auto byName = naming.file && !naming.format ? formatForPath(*naming.file) : std::nullopt;
  const FileFormat format = naming.format.value_or(byName.value_or(own.value_or(FileFormat::png)));
  if (naming.file) return {format, *naming.file, mayReplace};
  const fs::path source(photo.path);
  const bool keepsExtension = formatForPath(photo.path) == format;
  const std::string name = naming.pattern.nameFor(photo.path, index, count) +
                           (keepsExtension ? source.extension().string() : extensionFor(format));
  fs::path folder = naming.folder ? fs::path(*naming.folder) : source.parent_path();
  if (naming.folder && naming.keepsFolders) folder /= photo.subfolder;
  return {format, (folder / name).string(), mayReplace};
}

BatchTargets::BatchTargets(std::vector<BatchPhoto> photos, BatchNaming naming)
    : photos_(std::move(photos)), naming_(std::move(naming)) {
  for (const BatchPhoto& photo : photos_) {
    if (const auto identity = identityOf(photo.path)) inputs_.insert(*identity);
  }
}

std::string BatchTargets::freePath(const std::string& path) const {
  const fs::path wanted(path);
  std::string found = path;
  for (int number = 2; identityOf(found) || promised_.contains(onlyNameOf(found)); ++number) {
    const std::string name = wanted.stem().string() + " " + std::to_string(number);
    found = (wanted.parent_path() / (name + wanted.extension().string())).string();
  }
  return found;
}

Status BatchTargets::check(const std::string& path) const {
  const auto identity = path == "-" ? std::nullopt : identityOf(path);
  if (identity && inputs_.contains(*identity)) {
    return Error{"an input is never replaced: " + path};
  }
  if (promised_.contains(onlyNameOf(path))) {
    return Error{"two pictures would be written to " + path};
  }
  if (identity && naming_.existing == Existing::refuse) {
    return Error{path + " is there already (--force replaces it)"};
  }
  return Done{};
}

Status BatchTargets::promise(const std::string& path) {
  Status allowed = check(path);
  if (allowed) promised_.insert(onlyNameOf(path));
  return allowed;
}

Result<BatchTarget> BatchTargets::target(std::size_t index, const LoadedPhoto& photo) {
  PhotoOutput output = namedOutput(photos_[index], index, photos_.size(),
                                   exportFormatOf(photo.file->format), naming_);
  std::string& path = output.path;
  if (path == "-") {
    path.clear();
    return BatchTarget{output, false};
  }
  if (naming_.existing == Existing::rename) path = freePath(path);
  if (Status allowed = check(path); !allowed) return Error{allowed.error()};
  if (naming_.folder) {
    std::error_code failure;
    const fs::path folder = fs::path(path).parent_path();
    fs::create_directories(folder, failure);
    if (failure) return Error{"cannot make " + folder.string() + ": " + failure.message()};
  }
  promised_.insert(onlyNameOf(path));
  return BatchTarget{output, naming_.existing == Existing::skip};
}

void BatchTargets::leaveToOthers(std::size_t index) {
  const BatchPhoto& photo = photos_[index];
  const auto format = formatForPath(photo.path);
  promised_.insert(onlyNameOf(namedOutput(photo, index, photos_.size(), format, naming_).path));
}

}  // namespace velmara
