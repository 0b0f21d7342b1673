#include "app/data_store/managed_object_context.h"

#include <QUndoCommand>

#include <utility>

namespace velmara {
namespace {

// The store is small: a change keeps both states whole.
class Change final : public QUndoCommand {
 public:
  Change(ManagedObjects& objects, ManagedObjects after)
      : objects_(objects), before_(objects), after_(std::move(after)) {}

  void undo() override { objects_ = before_; }
  void redo() override { objects_ = after_; }

 private:
  ManagedObjects& objects_;
  ManagedObjects before_;
  ManagedObjects after_;
};

}  // namespace

ManagedObjectContext::ManagedObjectContext(PersistentStoreCoordinator& coordinator)
    : coordinator_(coordinator), objects_(coordinator.objects()) {}

bool ManagedObjectContext::insertObject(const ManagedObject& object) {
  if (!coordinator_.managedObjectModel().knows(object.entity)) return false;
  ManagedObjects changed = objects_;
  changed.push_back(object);
  change(std::move(changed));
  return true;
}

void ManagedObjectContext::deleteObject(const ManagedObject& object) {
  ManagedObjects changed = objects_;
  if (std::erase(changed, object) > 0) change(std::move(changed));
}

void ManagedObjectContext::change(ManagedObjects changed) {
  undo_.push(new Change(objects_, std::move(changed)));
}

bool ManagedObjectContext::commitEditing() {
  std::erase_if(editors_, [](const Editor& commit) { return commit(); });
  return editors_.empty();
}

Status ManagedObjectContext::save() {
  Status saved = coordinator_.save(objects_);
  if (saved) undo_.setClean();
  return saved;
}

}  // namespace velmara
