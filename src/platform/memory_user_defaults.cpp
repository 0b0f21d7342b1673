#include "platform/memory_user_defaults.h"

#include <utility>

namespace velmara {
namespace {

template <typename T, typename Values>
std::optional<T> find(const Values& values, std::string_view key) {
  const auto found = values.find(key);
  if (found == values.end()) return std::nullopt;
  const T* value = std::get_if<T>(&found->second);
  return value == nullptr ? std::nullopt : std::optional<T>(*value);
}

}  // namespace

MemoryUserDefaults::MemoryUserDefaults(std::string identifier)
    : identifier_(std::move(identifier)) {}

std::optional<std::string> MemoryUserDefaults::stringForKey(std::string_view key) const {
  return find<std::string>(values, key);
}

std::optional<std::int64_t> MemoryUserDefaults::integerForKey(std::string_view key) const {
  return find<std::int64_t>(values, key);
}

std::optional<bool> MemoryUserDefaults::boolForKey(std::string_view key) const {
  return find<bool>(values, key);
}

std::optional<DefaultsArray> MemoryUserDefaults::arrayForKey(std::string_view key) const {
  return find<DefaultsArray>(values, key);
}

void MemoryUserDefaults::setString(std::string_view key, std::string value) {
  values.insert_or_assign(std::string(key), std::move(value));
}

void MemoryUserDefaults::setInteger(std::string_view key, std::int64_t value) {
  values.insert_or_assign(std::string(key), value);
}

void MemoryUserDefaults::setBool(std::string_view key, bool value) {
  values.insert_or_assign(std::string(key), value);
}

void MemoryUserDefaults::setArray(std::string_view key, DefaultsArray value) {
  values.insert_or_assign(std::string(key), std::move(value));
}

void MemoryUserDefaults::removeObjectForKey(std::string_view key) {
  const auto found = values.find(key);
  if (found != values.end()) values.erase(found);
}

void MemoryUserDefaults::removePersistentDomain(std::string_view identifier) {
  if (identifier == identifier_) values.clear();
}

}  // namespace velmara
