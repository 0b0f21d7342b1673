#include "platform/panels.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <functional>
#include <string_view>
#include <utility>

namespace velmara {
namespace {

bool equalIgnoringCase(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](unsigned char x, unsigned char y) {
    return std::tolower(x) == std::tolower(y);
  });
}

// The part behind the last dot of the last path component; a leading dot begins no extension.
std::string_view extensionOf(std::string_view path) {
  const std::size_t slash = path.rfind('/');
  const std::string_view name = slash == std::string_view::npos ? path : path.substr(slash + 1);
  const std::size_t dot = name.rfind('.');
  if (dot == std::string_view::npos || dot == 0) return {};
  return name.substr(dot + 1);
}

// The other usual spelling of an extension, "" for the many that have one only.
std::string_view otherSpelling(std::string_view extension) {
  constexpr std::array<std::pair<std::string_view, std::string_view>, 4> kSpellings = {
      {{"jpg", "jpeg"}, {"jpeg", "jpg"}, {"tif", "tiff"}, {"tiff", "tif"}}};
  for (const auto& [one, other] : kSpellings) {
    if (equalIgnoringCase(extension, one)) return other;
  }
  return {};
}

// The allowed type that an extension means, itself before those of another spelling; null for none.
const std::string* meantType(std::string_view extension, const std::vector<std::string>& allowed) {
  if (extension.empty()) return nullptr;
  const std::array<std::function<bool(std::string_view)>, 3> tests = {
      [&](std::string_view type) { return type == extension; },
      [&](std::string_view type) { return equalIgnoringCase(type, extension); },
      [&](std::string_view type) { return equalIgnoringCase(type, otherSpelling(extension)); }};
  for (const auto& test : tests) {
    const auto found = std::find_if(allowed.begin(), allowed.end(), test);
    if (found != allowed.end()) return &*found;
  }
  return nullptr;
}

std::string withoutExtension(const std::string& path) {
  return path.substr(0, path.size() - extensionOf(path).size() - 1);
}

}  // namespace

std::string withAllowedFileType(const std::string& path, const std::vector<std::string>& allowed) {
  if (path.empty() || allowed.empty()) return path;
  if (const std::string* type = meantType(extensionOf(path), allowed)) {
    return withoutExtension(path) + "." + *type;
  }
  return path + (path.ends_with('.') ? "" : ".") + allowed.front();
}

std::string withChangedFileType(const std::string& name, const std::vector<std::string>& before,
                                const std::vector<std::string>& after) {
  const std::string_view extension = extensionOf(name);
  const bool givesWay =
      meantType(extension, before) != nullptr && meantType(extension, after) == nullptr;
  return withAllowedFileType(givesWay ? withoutExtension(name) : name, after);
}

}  // namespace velmara
