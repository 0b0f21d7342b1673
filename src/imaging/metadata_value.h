#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <variant>
#include <vector>

namespace velmara {

struct MetadataValue;

/// Keys in alphabetical order.
using MetadataDictionary = std::map<std::string, MetadataValue>;
using MetadataList = std::vector<MetadataValue>;

/// One property of a picture: a truth value, a number, a text (UTF-8), a list or a group of further
/// properties.
struct MetadataValue {
  using Content =
      std::variant<bool, std::int64_t, double, std::string, MetadataList, MetadataDictionary>;
  Content content;

  MetadataValue(bool value) : content(value) {}                           // NOLINT
  MetadataValue(int value) : content(std::int64_t{value}) {}              // NOLINT
  MetadataValue(std::int64_t value) : content(value) {}                   // NOLINT
  MetadataValue(double value) : content(value) {}                         // NOLINT
  MetadataValue(const char* value) : content(std::string(value)) {}       // NOLINT
  MetadataValue(std::string value) : content(std::move(value)) {}         // NOLINT
  MetadataValue(MetadataList value) : content(std::move(value)) {}        // NOLINT
  MetadataValue(MetadataDictionary value) : content(std::move(value)) {}  // NOLINT

  /// The value as this type, or null if it is of another.
  const bool* boolean() const { return std::get_if<bool>(&content); }
  const std::int64_t* integer() const { return std::get_if<std::int64_t>(&content); }
  const double* real() const { return std::get_if<double>(&content); }
  const std::string* text() const { return std::get_if<std::string>(&content); }
  const MetadataList* list() const { return std::get_if<MetadataList>(&content); }
  const MetadataDictionary* group() const { return std::get_if<MetadataDictionary>(&content); }
};

}  // namespace velmara
