#include "session/batch/name_pattern.h"

#include <algorithm>
#include <filesystem>
#include <functional>

namespace velmara {
namespace {

namespace fs = std::filesystem;

// Calls one of two with each piece of a pattern: the text between fields, and their names. False
// where a brace is left open.
bool eachPiece(std::string_view text, const std::function<void(std::string_view)>& plain,
               const std::function<void(std::string_view)>& field) {
  while (!text.empty()) {
    const auto begin = std::min(text.find('{'), text.size());
    plain(text.substr(0, begin));
    text.remove_prefix(begin);
    if (text.empty()) break;
    const auto end = text.find('}');
    if (end == std::string_view::npos) return false;
    field(text.substr(1, end - 1));
    text.remove_prefix(end + 1);
  }
  return true;
}

}  // namespace

Result<NamePattern> NamePattern::parse(std::string_view text) {
  bool tellsPhotosApart = false;
  std::string unknown;
  const bool isClosed = eachPiece(
      text, [](std::string_view) {},
      [&](std::string_view name) {
        tellsPhotosApart = tellsPhotosApart || name == "name" || name == "number";
        if (name != "name" && name != "number" && name != "folder") unknown = name;
      });
  if (!isClosed) return Error{"a name pattern needs a } for each {"};
  if (!unknown.empty()) {
    return Error{"{" + unknown + "} is none of {name}, {number} and {folder}"};
  }
  if (!tellsPhotosApart) return Error{"a name pattern needs {name} or {number}"};
  if (text.find('/') != std::string_view::npos || text.find('\0') != std::string_view::npos) {
    return Error{"a name pattern names a file, not a folder"};
  }
  NamePattern pattern;
  pattern.text_ = text;
  return pattern;
}

std::string NamePattern::nameFor(const std::string& photo, std::size_t index,
                                 std::size_t count) const {
  const fs::path path(photo);
  std::string number = std::to_string(index + 1);
  const std::size_t digits = std::to_string(std::max(count, index + 1)).size();
  number.insert(0, digits - number.size(), '0');
  std::string name;
  eachPiece(
      text_, [&](std::string_view plain) { name += plain; },
      [&](std::string_view field) {
        if (field == "name") name += path.stem().string();
        if (field == "number") name += number;
        if (field == "folder") {
          std::error_code failure;
          name += fs::absolute(path, failure).lexically_normal().parent_path().filename().string();
        }
      });
  return name;
}

bool NamePattern::isNameFor(const std::string& photo, const std::string& name) const {
  return text_.find("{number}") == std::string::npos && nameFor(photo, 0, 1) == name &&
         fs::path(photo).stem() != name;
}

}  // namespace velmara
