#pragma once

#include <map>
#include <string>
#include <vector>

#include "base/result.h"

namespace velmara {

/// What a store may hold: the names of the kinds of objects.
struct DataModel {
  std::string name;
  std::vector<std::string> entities;

  bool knows(const std::string& entity) const;
};

/// Reads a model file: XML, `<model name="..."><entity name="..."/></model>`.
Result<DataModel> readDataModel(const std::string& path);

/// One object of a store: its kind and its texts by name.
struct ManagedObject {
  std::string entity;
  std::map<std::string, std::string> attributes;

  bool operator==(const ManagedObject&) const = default;
};

using ManagedObjects = std::vector<ManagedObject>;

}  // namespace velmara
