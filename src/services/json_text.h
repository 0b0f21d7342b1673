#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace velmara {

/// A text or a number.
using JsonValue = std::variant<std::string, std::int64_t, double>;

/// Values by key, listed in the order in which the keys were first set.
class JsonDictionary {
 public:
  JsonDictionary() = default;
  JsonDictionary(std::initializer_list<std::pair<std::string, JsonValue>> entries);

  /// Sets a key; one that is there keeps its place.
  void set(const std::string& key, JsonValue value);

  const std::vector<std::pair<std::string, JsonValue>>& entries() const { return entries_; }

 private:
  std::vector<std::pair<std::string, JsonValue>> entries_;
};

/// Flat JSON text without white space: texts in quotes, numbers bare. Nothing is escaped, so a key
/// or text that holds a double quote gives invalid JSON.
std::string jsonFromDictionary(const JsonDictionary& dictionary);

}  // namespace velmara
