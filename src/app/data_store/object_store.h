#pragma once

#include <QUndoStack>

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "base/result.h"

namespace velmara {

/// What a store may hold: the names of the kinds of objects.
struct DataModel {
  /// The model's name, and those of its kinds.
  std::string name;
  std::vector<std::string> entities;

  /// Whether the model has a kind.
  bool knows(const std::string& entity) const;
};

/// Reads a model file: XML, `<model name="..."><entity name="..."/></model>`.
Result<DataModel> readDataModel(const std::string& path);

/// One object of a store: its kind and its texts by name.
struct ManagedObject {
  /// The kind, and texts by name.
  std::string entity;
  std::map<std::string, std::string> attributes;

  bool operator==(const ManagedObject&) const = default;
};

/// In the order they came in.
using ManagedObjects = std::vector<ManagedObject>;

/// Stands between a model and the one XML file its objects live in. Main thread.
class PersistentStoreCoordinator {
 public:
  /// A coordinator without a store.
  explicit PersistentStoreCoordinator(DataModel model) : model_(std::move(model)) {}

  /// Takes a file as the store and reads what it holds. A file that does not exist is an empty
  /// store and is made by the first save; one that is no store of this model is refused and left
  /// as it is.
  Status addXmlStore(const std::string& path);

  /// Replaces the file, whole or not at all. Refuses texts that XML cannot carry.
  Status save(const ManagedObjects& objects);

  /// The model it was made with.
  const DataModel& managedObjectModel() const { return model_; }
  /// What the file held when it was read or last saved.
  const ManagedObjects& objects() const { return objects_; }

 private:
  DataModel model_;
  std::string path_;
  ManagedObjects objects_;
};

/// The objects of a store as they are worked on, with undo; nothing reaches the file before save.
/// Main thread.
class ManagedObjectContext {
 public:
  /// Takes over what is being typed somewhere; false if it cannot be taken over as it stands.
  using Editor = std::function<bool()>;

  /// The objects that the coordinator's store holds now; it must outlive this.
  explicit ManagedObjectContext(PersistentStoreCoordinator& coordinator);

  /// As they stand.
  const ManagedObjects& objects() const { return objects_; }

  /// False, and nothing changes, if the model has no such kind.
  bool insertObject(const ManagedObject& object);
  /// Takes all objects that equal this one away.
  void deleteObject(const ManagedObject& object);

  /// Says that something is being typed which commitEditing must take over first.
  void objectDidBeginEditing(Editor editor) { editors_.push_back(std::move(editor)); }
  /// Asks every editor; those that cannot be committed are asked again the next time. Whether all
  /// were.
  bool commitEditing();

  /// Whether the objects differ from what was last saved; undoing everything is no change.
  bool hasChanges() const { return !undo_.isClean(); }
  /// Writes the objects to the store.
  Status save();

  /// Undoing and redoing changes the objects.
  QUndoStack& undoManager() { return undo_; }

 private:
  void change(ManagedObjects changed);

  PersistentStoreCoordinator& coordinator_;
  ManagedObjects objects_;
  std::vector<Editor> editors_;
  QUndoStack undo_;
};

}  // namespace velmara
