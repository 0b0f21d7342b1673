// The file of the data store, and the file of its model.
#include "app/data_store/object_store.h"
#include "fuzzing.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace velmara;
  const std::string path = fuzzing::fileOf(fuzzing::textOf(data, size));
  (void)readDataModel(path);

  const DataModel model{"Tarnlet", {"Photo", "Kind"}};
  PersistentStoreCoordinator store(model);
  if (!store.addXmlStore(path)) return 0;
  const ManagedObjects objects = store.objects();
  for (const ManagedObject& object : objects) {
    fuzzing::require(model.knows(object.entity), "a store holds what its model knows");
  }
  // What was read can be written, and is the same then.
  fuzzing::require(store.save(objects).ok(), "what was read can be written");
  PersistentStoreCoordinator again(model);
  fuzzing::require(again.addXmlStore(path).ok(), "what was written can be read");
  fuzzing::require(again.objects() == objects, "and is what it was");
  return 0;
}
