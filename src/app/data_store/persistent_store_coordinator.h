#pragma once

#include <string>

#include "app/data_store/data_model.h"
#include "base/result.h"

namespace velmara {

/// Stands between a model and the one XML file its objects live in. Main thread.
class PersistentStoreCoordinator {
 public:
  explicit PersistentStoreCoordinator(DataModel model) : model_(std::move(model)) {}

  /// Takes a file as the store and reads what it holds. A file that does not exist is an empty
  /// store and is made by the first save; one that is no store of this model is refused and left
  /// as it is.
  Status addXmlStore(const std::string& path);

  /// Replaces the file, whole or not at all. Refuses texts that XML cannot carry.
  Status save(const ManagedObjects& objects);

  const DataModel& managedObjectModel() const { return model_; }
  /// What the file held when it was read or last saved.
  const ManagedObjects& objects() const { return objects_; }

 private:
  DataModel model_;
  std::string path_;
  ManagedObjects objects_;
};

}  // namespace velmara
