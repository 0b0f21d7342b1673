#include "app/data_store/data_store.h"

#include <QCoreApplication>

#include <filesystem>
#include <system_error>
#include <utility>

#include "platform/log.h"

namespace velmara {
namespace {

constexpr const char* kDomain = "YOUR_ERROR_DOMAIN";
constexpr int kCode = 9999;

// The texts are their own keys.
struct DataStoreText {
  Q_DECLARE_TR_FUNCTIONS(DataStore)
};

}  // namespace

std::string DataStore::applicationDocumentsDirectory() const {
  return (std::filesystem::path(setup_.applicationSupportDirectory) / "KV.Tarnlet").string();
}

const DataModel* DataStore::managedObjectModel() {
  if (model_ == nullptr) {
    const std::string path = setup_.bundle.pathForResource("Tarnlet.momd");
    Result<DataModel> model = readDataModel(path);
    if (model) model_ = std::make_unique<DataModel>(std::move(model).value());
  }
  return model_.get();
}

PersistentStoreCoordinator* DataStore::persistentStoreCoordinator() {
  if (coordinator_ == nullptr && !hasFailed_) {
    if (const auto failure = openStore()) {
      hasFailed_ = true;
      presentFailure(*failure);
    }
  }
  return coordinator_.get();
}

std::optional<DataStore::Failure> DataStore::openStore() {
  const std::string directory = applicationDocumentsDirectory();
  std::error_code error;
  const std::filesystem::file_status status = std::filesystem::status(directory, error);
  if (std::filesystem::exists(status) && !std::filesystem::is_directory(status)) {
    return Failure{"Expected a folder to store application data, found a file (" + directory + ").",
                   {}};
  }
  const std::string reason = "There was an error creating or loading the application's saved data.";
  if (status.type() == std::filesystem::file_type::not_found) {
    std::filesystem::create_directories(directory, error);
  }
  if (error) return Failure{reason, error.message()};
  const DataModel* model = managedObjectModel();
  if (model == nullptr) return Failure{reason, {}};
  auto coordinator = std::make_unique<PersistentStoreCoordinator>(*model);
  const Status added =
      coordinator->addXmlStore((std::filesystem::path(directory) / "OSXCoreDataObjC.storedata"));
  if (!added) return Failure{reason, added.error()};
  coordinator_ = std::move(coordinator);
  return std::nullopt;
}

void DataStore::presentFailure(const Failure& failure) {
  setup_.presentError({.domain = kDomain,
                       .code = kCode,
                       .description = "Failed to initialize the application's saved data",
                       .failureReason = failure.reason,
                       .underlyingError = failure.underlyingError});
}

bool DataStore::presentSaveError(const std::string& reason) {
  return setup_.presentError(
      {.domain = kDomain,
       .code = kCode,
       .description = DataStoreText::tr("The application's data could not be saved.").toStdString(),
       .failureReason = reason,
       .underlyingError = {}});
}

ManagedObjectContext* DataStore::managedObjectContext() {
  if (context_ == nullptr) {
    if (PersistentStoreCoordinator* coordinator = persistentStoreCoordinator()) {
      context_ = std::make_unique<ManagedObjectContext>(*coordinator);
    }
  }
  return context_.get();
}

void DataStore::saveAction() {
  ManagedObjectContext* context = managedObjectContext();
  if (context == nullptr) return;
  if (!context->commitEditing()) {
    logLine("AppDelegate:saveAction: unable to commit editing before saving");
  }
  if (!context->hasChanges()) return;
  if (const Status saved = context->save(); !saved) presentSaveError(saved.error());
}

TerminateReply DataStore::applicationShouldTerminate() {
  if (context_ == nullptr) return TerminateReply::kNow;
  if (!context_->commitEditing()) {
    logLine("AppDelegate:applicationShouldTerminate: unable to commit editing to terminate");
    return TerminateReply::kCancel;
  }
  if (!context_->hasChanges()) return TerminateReply::kNow;
  const Status saved = context_->save();
  if (saved) return TerminateReply::kNow;
  if (presentSaveError(saved.error())) return TerminateReply::kCancel;
  const int answer = setup_.alerts->runModal(
      {DataStoreText::tr("Could not save changes while quitting. Quit anyway?").toStdString(),
       DataStoreText::tr(
           "Quitting now will lose any changes you have made since the last successful save")
           .toStdString(),
       {DataStoreText::tr("Quit anyway").toStdString(),
        DataStoreText::tr("Cancel").toStdString()}});
  return answer == 0 ? TerminateReply::kCancel : TerminateReply::kNow;
}

}  // namespace velmara
