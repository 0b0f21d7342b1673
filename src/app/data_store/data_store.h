#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "app/data_store/object_store.h"
#include "platform/bundle.h"
#include "platform/panels.h"

namespace velmara {

/// A fault of the data store as it is presented.
struct DataStoreError {
  /// Whose fault it is, and which.
  std::string domain;
  int code = 0;
  /// What failed and why, in words.
  std::string description;
  std::string failureReason;
  std::string underlyingError;  ///< empty if there is none
};

/// The answer to the question whether the program may end.
enum class TerminateReply { kCancel, kNow };

/// What the store works with.
struct DataStoreSetup {
  /// The folder of the user's application data; the store has a folder of its own in it.
  std::string applicationSupportDirectory;
  /// Where the model is found, and where faults are told.
  BundleFacts bundle;
  AlertPresenter* alerts = nullptr;
  /// Shows an error to the user; true if the user or the program could mend it.
  std::function<bool(const DataStoreError&)> presentError;
};

/// A small persistent store of XML, made on first use; the program works without it. A store that
/// cannot be had is reported once. Main thread.
class DataStore {
 public:
  /// Nothing is opened yet.
  explicit DataStore(DataStoreSetup setup) : setup_(std::move(setup)) {}

  /// The store's folder, whether it is there or not.
  std::string applicationDocumentsDirectory() const;
  /// The model "Tarnlet" of the bundle; null if there is none.
  const DataModel* managedObjectModel();
  /// Makes the folder and opens the file; null if that fails.
  PersistentStoreCoordinator* persistentStoreCoordinator();
  /// Null without a coordinator.
  ManagedObjectContext* managedObjectContext();

  /// Commits what is being edited and saves what has changed.
  void saveAction();
  /// Saves what has changed before the end. If that fails, the user is asked, and the answer is
  /// taken the wrong way round, as it is meant to be: "Quit anyway" goes on running.
  TerminateReply applicationShouldTerminate();

 private:
  struct Failure {
    std::string reason;
    std::string underlyingError;
  };
  std::optional<Failure> openStore();
  void presentFailure(const Failure& failure);
  bool presentSaveError(const std::string& reason);

  DataStoreSetup setup_;
  std::unique_ptr<DataModel> model_;
  std::unique_ptr<PersistentStoreCoordinator> coordinator_;
  std::unique_ptr<ManagedObjectContext> context_;
  bool hasFailed_ = false;
};

}  // namespace velmara
