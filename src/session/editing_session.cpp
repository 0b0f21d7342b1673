// How a photo comes into the session and leaves it, and what the table's actions mean.
#include "session/editing_session.h"

#include <utility>

#include "imaging/file_format.h"
#include "imaging/memory_budget.h"
#include "imaging/utils.h"
#include "platform/workspace.h"
#include "session/bookmarks.h"
#include "session/labels.h"
#include "session/questions.h"

namespace velmara {
namespace {

// What an export needs beside the photo: its result, the engine's channels, the file's bytes.
constexpr std::uint64_t kExportPhotos = 3;

std::uint64_t bytesOf(const Image& image) {
  std::uint64_t bytes = 0;
  for (const Bitmap& bitmap : image.representations()) bytes += bitmap.bytes().size();
  return bytes;
}

}  // namespace

EditingSession::EditingSession(EditingServices services)
    : services_(std::move(services)), runState_(services_.timers, services_.jobs.log) {
  connect(&runState_, &RunState::runEnded, this, [this] { runWasEnded(); });
  setupAdjustParamView();
}

EditingSession::~EditingSession() {
  services_.timers.cancel(this);
  dropJob();
  if (encoding_ != nullptr) encoding_->cancel();
}

bool EditingSession::isPhotoTemporary() const {
  const std::string& folder = services_.temporaryDirectory;
  return selectedImageFile_ && !folder.empty() && selectedImageFile_->filePath.starts_with(folder);
}

void EditingSession::take(EditEvent event) {
  const auto step = editStep(state_, talk_, event);
  if (!step) return;
  state_ = step->state;
  talk_ = step->talk;
  for (const EditAction action : step->actions) perform(action);
}

void EditingSession::perform(EditAction action) {
  switch (action) {
    case EditAction::kNothing:
      return;
    case EditAction::kOpenPhoto:
      return updateSelectedImageToBeFilteredWithPath(pathToOpen_);
    case EditAction::kLetWait:
      imgPathToImportAfterExportWorkingImg_ = pathToOpen_;
      return;
    case EditAction::kForgetWaiting:
      return imgPathToImportAfterExportWorkingImg_.clear();
    case EditAction::kOpenWaiting:
      if (isExportingWithAddingNewImage()) {
        openPhoto(std::exchange(imgPathToImportAfterExportWorkingImg_, {}), hasPhoto());
      }
      return;
    case EditAction::kShowPhoto:
      runState_.changeControls(controlsWithPhoto);
      Q_EMIT photoLoaded(photo_);
      return;
    case EditAction::kForgetPhoto:
      return forgetPhoto();
    case EditAction::kTellUnreadable:
      // Or the restore, whose time may come while this is told, would open it again.
      saveBookmarkPathsFromTableView();
      services_.alerts.runModal(formatNotSupportedAlert(failure_));
      return;
    case EditAction::kAsk:
      return ask();
    case EditAction::kCloseSheet:
      Q_EMIT saveChangesAnswered();
      Q_EMIT closeButtonReleased();
      return;
    case EditAction::kShowPanel:
      exportFormats_ = exportFormatsFor(selectedImageFile_->fileExtension);
      Q_EMIT savePanelShown();
      return;
    case EditAction::kClosePanel:
      Q_EMIT savePanelClosed();
      return;
    case EditAction::kTurnExportButtonOff:
      Q_EMIT exportButtonReleased();
      return;
    case EditAction::kExport:
      return beginExport();
    case EditAction::kStopWork:
      return cancelRun();
    case EditAction::kTellSaved:
      Q_EMIT photoSaved(pathToExportImage_);
      return;
    case EditAction::kTellFailure:
      services_.alerts.runModal(exportFailedAlert(pathToExportImage_, failure_));
      return;
    case EditAction::kOfferRating:
      return offerRating();
    case EditAction::kTerminate:
      return services_.terminateApp();
  }
}

void EditingSession::setupAdjustParamView() {
  parameters_ = {true, kLowestLevel, percentLabel(kLowestLevel * 10.0), {}};
  shownParameters_.reset();
  nextLevel_.reset();
  mapping_ = {};
  flagDenoiseModeSelected_ = 0;
  runState_.reset();
  Q_EMIT parametersChanged();
}

void EditingSession::photoDraggedWithPath(const std::string& path) {
  pathToOpen_ = path;
  take(EditEvent::kOpen);
}

void EditingSession::forgetPhoto() {
  dropJob();
  selectedImageFile_.reset();
  arraySelectedImagesToProcess_.clear();
  photo_ = {};
  region_ = {};
  lastExportedImage_ = {};
  setupAdjustParamView();
  Q_EMIT photoForgotten();
}

void EditingSession::updateSelectedImageToBeFilteredWithPath(const std::string& path) {
  openPhoto(path, false);
}

void EditingSession::openPhoto(const std::string& path, bool isScreenRebuilt) {
  services_.jobs.log("updateSelectedImageToBeFilteredWithPath:");
  const Result<LoadedPhoto> photo = velmara::openPhoto(path);
  if (!photo || photo->record.width < 1 || photo->record.height < 1 ||
      !isReadableFileType(photo->record.fileExtension)) {
    services_.alerts.runModal(formatNotSupportedAlert());
    runState_.disableActionsInRunningMode();
    take(EditEvent::kRefused);
    return;
  }
  if (isScreenRebuilt) {
    setupAdjustParamView();
    Q_EMIT photoForgotten();
  }
  if (selectedImageFileToProccessing_) {
    Utils::sharedUtils().deleteFileAtPath(selectedImageFileToProccessing_->filePath);
  }
  photoBecameCurrent(*photo);
  saveBookmarkPathsFromTableView();
  take(EditEvent::kBecameCurrent);
  Q_EMIT photoOpened();
  loadPhoto();
}

void EditingSession::photoBecameCurrent(const LoadedPhoto& photo) {
  dropJob();
  selectedImageFileToProccessing_.reset();
  arraySelectedImagesToProcess_ = {photo.record};
  selectedImageFile_ = photo.record;
  photo_ = photo;
  region_ = {};
  lastExportedImage_ = {};
  psnrOfRealImage_ = 0.0F;
  deepNoise_.reset();
  hasToldFailure_ = false;
  parameters_.sliderCustomDenoise = restingLevel();
  parameters_.txtCustomDenoiseVal = levelLabel(restingLevel());
  shownParameters_.reset();
  nextLevel_.reset();
  runState_.reset();
  Q_EMIT parametersChanged();
}

void EditingSession::loadPhoto() {
  PhotoJobRequest request;
  request.path = photo_.record.filePath;
  request.photo = photo_;
  request.filters = false;
  photo_.file.reset();  // The job has it.
  startJob(std::move(request), &EditingSession::photoWasRead);
}

void EditingSession::photoWasRead(const PhotoJobResult& result) {
  if (result.end != PhotoJobResult::End::finished) {
    failure_ = photo_.record.filePath + "\n" + result.reason;
    take(EditEvent::kUnreadable);
    return;
  }
  photo_ = result.photo;
  take(EditEvent::kLoaded);
  // Then what needs the pixels reads them again.
  if (!fitsInMemory(kExportPhotos * bytesOf(photo_.image))) photo_.image = {};
}

void EditingSession::saveBookmarkPathsFromTableView() {
  velmara::saveBookmarkPathsFromTableView(arraySelectedImagesToProcess_, services_.defaults);
}

void EditingSession::loadLastWorkedImageFromDefaults() {
  if (hasPhoto()) return;  // Somebody was quicker than the delay.
  std::vector<PhotoFile> remembered;
  const auto last = velmara::loadLastWorkedImageFromDefaults(
      remembered, services_.defaults,
      [](const std::string& path) { return isInTrash(path, trashPlacesFor(path)); });
  if (last) updateSelectedImageToBeFilteredWithPath(*last);
}

}  // namespace velmara
