#include "session/editing_session.h"

#include <utility>

#include "imaging/image_reader.h"
#include "platform/dispatch.h"
#include "session/percent_label.h"
#include "session/progress_estimate.h"
#include "session/whole_photo.h"

namespace velmara {
namespace {

constexpr double kLowestLevel = 1.0;

std::string levelLabel(int level) {
  return percentLabel(level * 10.0);
}

// From the headers alone: decoding a whole photo is the worker's business.
bool isLoadable(const std::string& path) {
  return readRepresentationSizes(path).ok();
}

Image loadSmallPhoto(const std::string& path) {
  auto image = readImage(path);
  return image ? std::move(image).value() : Image();
}

}  // namespace

EditingSession::EditingSession(PhotoSlots& photos, EditingScreen& screen, EditingServices services)
    : photos_(photos),
      screen_(screen),
      services_(std::move(services)),
      runState_(screen, services_.timers, services_.log) {}

void EditingSession::setupAdjustParamView() {
  mapping_ = {};
  photoBecameCurrent();
  isExportingPhoto = false;
  runState_.reset();
  screen_.setSliderCustomDenoise(kLowestLevel);
  screen_.setTxtCustomDenoiseVal(levelLabel(1));
  screen_.setAutoModeOn(true);
  flagDenoiseModeSelected = 0;
}

// The button has toggled itself before it calls; only a manual level may leave it off.
void EditingSession::btnAutoModeTapped() {
  const bool mayRun = !runState_.isRunningAlgorithm() && hasPhoto();
  if (!mayRun || !screen_.isAutoModeOn()) {
    screen_.setAutoModeOn(true);
    return;
  }
  screen_.setSliderCustomDenoise(kLowestLevel);
  denoiseImageWithSliderValue(1, 1, true);
}

void EditingSession::sliderCustomDenoiseAction() {
  if (!hasPhoto() || runState_.isRunningAlgorithm()) return;
  screen_.setAutoModeOn(false);
  const int level = denoiseLevelForSliderValue(screen_.sliderCustomDenoise());
  screen_.setTxtCustomDenoiseVal(levelLabel(level));
  denoiseImageWithSliderValue(DenoiseMode::kManualThreshold, level, false);
}

void EditingSession::btnSoftModeAction() {
  flagDenoiseModeSelected = 0;
  sliderCustomDenoiseAction();
}

void EditingSession::btnHardModeAction() {
  flagDenoiseModeSelected = 1;
  sliderCustomDenoiseAction();
}

void EditingSession::seletedPhotoToBeFilteredIsChanged() {
  const auto& region = photos_.selectedImageFileToProccessing;
  if (!region || (!photos_.selectedRegion.isValid() && !isLoadable(region->filePath))) {
    exportRunFailed();
    return;
  }
  services_.log("seletedPhotoToBeFilteredIsChanged!!");
  runState_.changeControls(controlsWithPhoto);
  if (photos_.selectedImageFile) screen_.showSelectedPhoto(*photos_.selectedImageFile);
  if (screen_.isAutoModeOn()) {
    screen_.setAutoModeOn(true);
    services_.log("before denoiseImageWithSliderValue!!");
    denoiseImageWithSliderValue(1, 1, true);
    services_.log("after denoiseImageWithSliderValue!!");
  } else {
    screen_.setAutoModeOn(false);
    sliderCustomDenoiseAction();
  }
}

void EditingSession::denoiseImageWithSliderValue(int thresholdValue, int denoiseLevelValue,
                                                 bool autoMode) {
  if (runState_.isRunningAlgorithm()) return;
  calibrateIfNeeded({autoMode, DenoiseMode::kManualThreshold, denoiseLevelValue});
  services_.mainQueue.async([this, alive = std::weak_ptr(alive_)] {
    if (!alive.expired()) setupAndShowProgressBarViewForCurrentImage();
  });
  lastExportedImage = {};
  screen_.setTxtDenoiseMode(autoMode ? "Auto" : "Manual");
  runState_.denoisingProcessStarted();
  applyOpenCVDenoiseAlgorithmWithSliderValue(thresholdValue, denoiseLevelValue, autoMode);
}

void EditingSession::calibrateIfNeeded(const DenoiseMode& mode) {
  FilterParameters parameters = kFirstCalibration;
  if (photos_.pixelsProcessRate != 0) {
    if (!isExportingPhoto) return;
    parameters = calibrationParameters(
        getSigmaTresholdParamDictForPSNR(double{psnrOfRealImage_}, mode.isAutoMode,
                                         mode.thrsholdVal, mode.denoiseLevelValue),
        mode);
  }
  photos_.pixelsProcessRate =
      services_.engine.processingSpeed(services_.loadTestImage(), parameters);
}

SigmaThreshold EditingSession::getSigmaTresholdParamDictForPSNR(double psnr, bool isAutoMode,
                                                                int thrsholdVal,
                                                                int denoiseLevelValue) {
  const MappedParameters mapped = mapNoiseToParameters(
      psnr, {isAutoMode, thrsholdVal, denoiseLevelValue}, isExportingPhoto, mapping_);
  mapping_ = mapped.mapping;
  return mapped.parameters;
}

const std::optional<PhotoFile>& EditingSession::photoToFilter() const {
  return isExportingPhoto ? photos_.selectedImageFile : photos_.selectedImageFileToProccessing;
}

void EditingSession::setupAndShowProgressBarViewForCurrentImage() {
  const auto& photo = photoToFilter();
  const std::int64_t rate = photos_.pixelsProcessRate;
  const double estimate = estimatedCompletionTime(
      photo ? photo->width : 0, photo ? photo->height : 0, rate, isExportingPhoto);
  services_.log(estimateLogLine(rate, estimate));
  runState_.startProgress(estimate);
}

void EditingSession::applyOpenCVDenoiseAlgorithmWithSliderValue(int thresholdValue,
                                                                int denoiseLevelValue,
                                                                bool autoMode) {
  screen_.setAutoModeOn(autoMode);
  screen_.settingUpUIElementsForCurrentSelections();
  const std::optional<PhotoFile> photo = photoToFilter();
  if (!photo) {
    exportRunFailed();
    return;
  }
  const bool isInMemory = !isExportingPhoto && photos_.selectedRegion.isValid();
  if (!isLargeEnoughToFilter(*photo)) {
    ++now_.run;
    complete(*photo, isInMemory ? photos_.selectedRegion : loadSmallPhoto(photo->filePath),
             isExportingPhoto);
    return;
  }
  if (!isInMemory && !isLoadable(photo->filePath)) {
    exportRunFailed();
    return;
  }
  dispatchWorker(*photo, {autoMode, thresholdValue, denoiseLevelValue});
}

void EditingSession::dispatchWorker(const PhotoFile& photo, const DenoiseMode& mode) {
  DenoiseJob job;
  job.photo = photo;
  if (photos_.selectedImageFile) job.wholePhotoPath = photos_.selectedImageFile->filePath;
  job.mode = mode;
  job.isExportingPhoto = isExportingPhoto;
  job.wholePhoto = isExportingPhoto ? photos_.selectedImageAsStored : photos_.selectedRegion;
  job.currentZooomFactor = screen_.currentZooomFactor();
  job.psnrOfRealImage = psnrOfRealImage_;
  job.mapping = mapping_;
  ++now_.run;
  services_.globalQueue.async([this, alive = std::weak_ptr(alive_), job = std::move(job),
                               ticket = now_, engine = &services_.engine, log = services_.log,
                               mainQueue = &services_.mainQueue] {
    const DenoiseOutcome outcome = runDenoiseJob(job, *engine, log);
    dispatchSync(*mainQueue, [&] {
      if (!alive.expired()) takeOutcome(job, ticket, outcome);
    });
  });
}

void EditingSession::takeOutcome(const DenoiseJob& job, const Ticket& ticket,
                                 const DenoiseOutcome& outcome) {
  if (ticket.run != now_.run) return;
  mapping_ = outcome.mapping;
  const bool isSamePhoto = ticket.photo == now_.photo;
  if (isSamePhoto) psnrOfRealImage_ = outcome.psnrOfRealImage;
  if (job.isExportingPhoto || (isSamePhoto && ticket.view == now_.view)) {
    complete(job.photo, outcome.image, job.isExportingPhoto);
    return;
  }
  screen_.previewResultDropped();
  runState_.enableActionsInDeafultModeAfterDelay();
}

void EditingSession::complete(const PhotoFile& photo, const Image& image, bool isExport) {
  if (!isExport) {
    denoisingProcessCompletedWithOutputImage(image);
    return;
  }
  originalPhotoToExportDenoisingCompletedOutputImage(photo, image);
  isExportingPhoto = false;
}

void EditingSession::denoisingProcessCompletedWithOutputImage(const Image& image) {
  if (!image.isValid()) return;
  services_.log("Denoising Done !!");
  screen_.previewFinished(image);
  runState_.enableActionsInDeafultModeAfterDelay();
}

void EditingSession::originalPhotoToExportDenoisingCompletedOutputImage(const PhotoFile& photo,
                                                                        const Image& image) {
  if (!image.isValid()) {
    exportRunFailed();
    return;
  }
  services_.log("Denoising Done !!");
  // Not the picture of a photo that has been replaced meanwhile: the next export would take it.
  const auto& current = photos_.selectedImageFile;
  if (current && current->filePath == photo.filePath) lastExportedImage = image;
  screen_.exportFinished(photo, image);
  runState_.enableActionsInDeafultModeAfterDelay();
}

void EditingSession::exportRunFailed() {
  if (!std::exchange(isExportingPhoto, false)) return;
  screen_.exportRunFailed();
}

void EditingSession::photoBecameCurrent() {
  psnrOfRealImage_ = 0.0F;
  // Exporting before the first run must not write the old photo under the new one's name.
  lastExportedImage = {};
  photos_.selectedImageAsStored = {};
  photos_.selectedRegion = {};
  ++now_.photo;
}

void EditingSession::dropResultInFlight() {
  ++now_.view;
}

}  // namespace velmara
