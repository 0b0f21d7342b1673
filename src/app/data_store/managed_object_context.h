#pragma once

#include <QUndoStack>

#include <functional>
#include <vector>

#include "app/data_store/persistent_store_coordinator.h"

namespace velmara {

/// The objects of a store as they are worked on, with undo; nothing reaches the file before save.
/// Main thread.
class ManagedObjectContext {
 public:
  /// Takes over what is being typed somewhere; false if it cannot be taken over as it stands.
  using Editor = std::function<bool()>;

  explicit ManagedObjectContext(PersistentStoreCoordinator& coordinator);

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
  Status save();

  QUndoStack& undoManager() { return undo_; }

 private:
  void change(ManagedObjects changed);

  PersistentStoreCoordinator& coordinator_;
  ManagedObjects objects_;
  std::vector<Editor> editors_;
  QUndoStack undo_;
};

}  // namespace velmara
