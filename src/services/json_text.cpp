#include "services/json_text.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace velmara {
namespace {

template <typename Number>
std::string bareNumber(Number value) {
  std::array<char, 64> buffer{};
  const auto [end, error] = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value);
  return {buffer.data(), end};
}

std::string valueText(const JsonValue& value) {
  if (const auto* text = std::get_if<std::string>(&value)) return '"' + *text + '"';
  if (const auto* whole = std::get_if<std::int64_t>(&value)) return bareNumber(*whole);
  return bareNumber(std::get<double>(value));
}

}  // namespace

JsonDictionary::JsonDictionary(std::initializer_list<std::pair<std::string, JsonValue>> entries) {
  for (const auto& [key, value] : entries) set(key, value);
}

void JsonDictionary::set(const std::string& key, JsonValue value) {
  const auto found = std::find_if(entries_.begin(), entries_.end(),
                                  [&](const auto& entry) { return entry.first == key; });
  if (found != entries_.end()) {
    found->second = std::move(value);
  } else {
    entries_.emplace_back(key, std::move(value));
  }
}

std::string jsonFromDictionary(const JsonDictionary& dictionary) {
  std::string json = "{";
  for (const auto& [key, value] : dictionary.entries()) {
    if (json.size() > 1) json.push_back(',');
    json.append("\"").append(key).append("\":").append(valueText(value));
  }
  return json.append("}");
}

}  // namespace velmara
