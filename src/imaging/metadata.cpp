#include "imaging/metadata.h"

namespace velmara {

const MetadataValue* ImageMetadata::find(const std::string& key) const {
  const auto item = dictionary_.find(key);
  return item != dictionary_.end() ? &item->second : nullptr;
}

const MetadataValue* ImageMetadata::find(const std::string& group, const std::string& key) const {
  const MetadataValue* entry = find(group);
  const MetadataDictionary* entries = entry != nullptr ? entry->group() : nullptr;
  if (entries == nullptr) return nullptr;
  const auto item = entries->find(key);
  return item != entries->end() ? &item->second : nullptr;
}

std::optional<int> ImageMetadata::orientation() const {
  const MetadataValue* value = find("Orientation");
  if (value == nullptr || value->integer() == nullptr) return std::nullopt;
  return static_cast<int>(*value->integer());
}

}  // namespace velmara
