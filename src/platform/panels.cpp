#include "platform/panels.h"

#include <algorithm>
#include <cctype>
#include <string_view>

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

bool endsInOneOf(std::string_view path, const std::vector<std::string>& types) {
  const std::string_view extension = extensionOf(path);
  return !extension.empty() && std::any_of(types.begin(), types.end(), [&](const auto& type) {
    return equalIgnoringCase(extension, type);
  });
}

}  // namespace

std::string withAllowedFileType(const std::string& path, const std::vector<std::string>& allowed) {
  if (path.empty() || allowed.empty() || endsInOneOf(path, allowed)) return path;
  return path + (path.ends_with('.') ? "" : ".") + allowed.front();
}

std::string withChangedFileType(const std::string& name, const std::vector<std::string>& before,
                                const std::vector<std::string>& after) {
  std::string stem = name;
  if (endsInOneOf(name, before) && !endsInOneOf(name, after)) {
    stem.resize(name.size() - extensionOf(name).size() - 1);
  }
  return withAllowedFileType(stem, after);
}

}  // namespace velmara
