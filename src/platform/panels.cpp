#include "platform/panels.h"

#include <QByteArray>

#include <algorithm>
#include <filesystem>

namespace velmara {
namespace {

namespace fs = std::filesystem;

// Three ways to read an extension, each taking more of them for the same.
using Reading = std::string (*)(const std::string& extension);

std::string asItStands(const std::string& extension) {
  return extension;
}

std::string inLowerCase(const std::string& extension) {
  return QByteArray::fromStdString(extension).toLower().toStdString();
}

std::string inItsShorterSpelling(const std::string& extension) {
  const std::string lower = inLowerCase(extension);
  return lower == "jpeg" ? "jpg" : lower == "tiff" ? "tif" : lower;
}

// The allowed type that a path's extension means; null for none.
const std::string* meantType(const fs::path& path, const std::vector<std::string>& allowed) {
  const std::string dotted = path.extension().string();
  if (dotted.size() < 2) return nullptr;
  for (const Reading read : {asItStands, inLowerCase, inItsShorterSpelling}) {
    const auto found = std::find_if(allowed.begin(), allowed.end(), [&](const std::string& type) {
      return read(type) == read(dotted.substr(1));
    });
    if (found != allowed.end()) return &*found;
  }
  return nullptr;
}

}  // namespace

std::string withAllowedFileType(const std::string& path, const std::vector<std::string>& allowed) {
  if (path.empty() || allowed.empty()) return path;
  if (const std::string* type = meantType(path, allowed)) {
    return fs::path(path).replace_extension(*type).string();
  }
  return path + (path.ends_with('.') ? "" : ".") + allowed.front();
}

std::string withChangedFileType(const std::string& name, const std::vector<std::string>& before,
                                const std::vector<std::string>& after) {
  const bool givesWay = meantType(name, before) != nullptr && meantType(name, after) == nullptr;
  return withAllowedFileType(givesWay ? fs::path(name).replace_extension().string() : name, after);
}

}  // namespace velmara
