// Saving the whole photo, the question about unsaved work, and the way out.
#include <algorithm>
#include <filesystem>
#include <utility>

#include "platform/workspace.h"
#include "session/editing_session.h"
#include "session/questions.h"
#include "session/rate_invitation.h"

namespace velmara {
namespace {

constexpr Seconds kInvitationDelay(0.2);
// What the name of a saved photo differs by from the photo's.
constexpr const char* kSuffix = "-denoised";

}  // namespace

void EditingSession::ask() {
  Q_EMIT saveChangesAsked(saveChangesHeader(selectedImageFile_->fileName));
}

void EditingSession::btnExportDenoisedImageTapped() {
  take(EditEvent::kSave);
}

SavePanelOptions EditingSession::savePanelOptions() const {
  const std::filesystem::path photo(selectedImageFile_->filePath);
  SavePanelOptions options;
  options.title = tr("Save Image").toStdString();
  options.nameFieldStringValue = photo.stem().string() + kSuffix;
  options.directory = isPhotoTemporary() ? picturesDirectory() : photo.parent_path().string();
  options.allowedFileTypes = exportFormats_.arrformatsSupportedByIM;
  return options;
}

void EditingSession::savePanelAnswered(const std::string& path) {
  Q_EMIT exportButtonReleased();
  if (talk_ != EditTalk::kPanel) return;
  if (path.empty() || (isPhotosOwnFile(*selectedImageFile_, path) &&
                       services_.alerts.runModal(replaceOriginalQuestion(*selectedImageFile_)))) {
    take(EditEvent::kPanelCancelled);
    return;
  }
  const std::string extension = std::filesystem::path(path).extension().string();
  fileTypeToExportImage_ = extension.empty() ? extension : extension.substr(1);
  pathToExportImage_ = path;
  take(EditEvent::kPanelConfirmed);
}

PhotoOutput EditingSession::output() const {
  return {writerFor(exportFormats_, exportChoice(exportFormats_, fileTypeToExportImage_,
                                                 selectedImageFile_->fileExtension)),
          pathToExportImage_};
}

void EditingSession::beginExport() {
  hasExported_ = true;
  if (!lastExportedImage_.isValid()) {
    seletedPhotoToBeFilteredIsChanged();
    return;
  }
  runState_.workStarted();
  PhotoJobRequest request;
  request.path = photo_.record.filePath;
  request.photo = photo_;
  request.filtered = lastExportedImage_;
  request.psnrOfRealImage = psnrOfRealImage_;
  request.deepNoise = deepNoise_;
  request.mapping = mapping_;
  request.pixelsProcessRate = pixelsProcessRate_;
  request.output = output();
  startJob(std::move(request), &EditingSession::exportFinished);
}

bool EditingSession::encodeResult(std::function<void(const PhotoJobResult&)> finished) {
  if (!hasPhoto() || state_ == EditState::kLoading || encoding_ != nullptr) return false;
  PhotoJobRequest request;
  request.path = photo_.record.filePath;
  request.photo = photo_;
  request.filtered = lastExportedImage_;
  request.mode = isAutoModeOn()
                     ? DenoiseMode::automatic()
                     : DenoiseMode::manual(denoiseLevelForSliderValue(sliderCustomDenoise()));
  request.psnrOfRealImage = psnrOfRealImage_;
  request.mapping = mapping_;
  request.isDeep = isDeepModeOn();
  request.deepNoise = deepNoise_;
  request.output = PhotoOutput{.format = FileFormat::png, .path = {}};
  PhotoJobListener listener;
  listener.finished = [this, alive = std::weak_ptr(alive_),
                       finished = std::move(finished)](const PhotoJobResult& result) {
    if (alive.expired()) return;
    encoding_.reset();
    finished(result);
  };
  encoding_ = PhotoJob::start(std::move(request), services_.jobs, std::move(listener));
  return true;
}

void EditingSession::exportFinished(const PhotoJobResult& result) {
  takeMeasurements(result);
  switch (result.end) {
    case PhotoJobResult::End::finished:
      if (result.hasReplacedPhoto) takeReplacedPhoto(result);
      originalPhotoToExportDenoisingCompletedOutputImage(result.image);
      return;
    case PhotoJobResult::End::cancelled:
      runState_.enableActionsInDeafultModeAfterDelay();
      take(EditEvent::kWriteCancelled);
      return;
    case PhotoJobResult::End::failed:
      // What was filtered need not be filtered again only because the disk is full.
      lastExportedImage_ = result.image;
      failure_ = result.reason;
      runState_.enableActionsInDeafultModeAfterDelay();
      take(EditEvent::kWriteFailed);
      return;
  }
}

// Its file is upright now and has its new size: nothing may turn it again.
void EditingSession::takeReplacedPhoto(const PhotoJobResult& result) {
  photo_ = result.photo;
  deepNoise_.reset();
  selectedImageFile_ = photo_.record;
  arraySelectedImagesToProcess_ = {photo_.record};
  Q_EMIT photoShown(*selectedImageFile_);
}

void EditingSession::originalPhotoToExportDenoisingCompletedOutputImage(const Image& image) {
  services_.jobs.log("Denoising Done !!");
  lastExportedImage_ = image;
  runState_.enableActionsInDeafultModeAfterDelay();
  take(EditEvent::kWritten);
}

void EditingSession::offerRating() {
  if (services_.storePage.empty()) return;
  if (!isInvitationOpen(services_.defaults, services_.bundle.CFBundleVersion)) return;
  runState_.showProgressBarCompleted();
  services_.timers.after(this, "showAlertForRateApp", kInvitationDelay,
                         [this] { showAlertForRateApp(); });
}

void EditingSession::showAlertForRateApp() {
  runState_.hideProgress();
  if (!velmara::showAlertForRateApp(services_.defaults)) return;
  services_.showAppInFront();
  if (services_.alerts.runModal(rateInvitation()) != 0) return;
  if (services_.workspace.openURL(services_.storePage, true)) {
    invitationAccepted(services_.defaults, services_.bundle.CFBundleVersion);
  }
}

void EditingSession::btncloseFileFromMenuTapped() {
  isQuitFromMenu_ = true;
  btnCloseWindowTapped();
}

bool EditingSession::windowShouldClose() {
  const auto step = editStep(state_, talk_, EditEvent::kClose);
  // The end of the main window is the end of the application.
  if (step && std::ranges::find(step->actions, EditAction::kTerminate) != step->actions.end()) {
    return true;
  }
  take(EditEvent::kClose);
  return false;
}

}  // namespace velmara
