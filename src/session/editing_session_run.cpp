// The parameters, and the one job that is under way.
#include <utility>

#include "session/editing_session.h"
#include "session/labels.h"
#include "session/progress_estimate.h"
#include "session/questions.h"

namespace velmara {
double EditingSession::sliderCustomDenoise() const {
  return nextLevel_.value_or(parameters_.sliderCustomDenoise);
}

std::string EditingSession::txtCustomDenoiseVal() const {
  if (!nextLevel_) return parameters_.txtCustomDenoiseVal;
  return levelLabel(*nextLevel_);
}

std::string EditingSession::levelLabel(double sliderValue) const {
  const int level = denoiseLevelForSliderValue(sliderValue);
  return isDeepModeOn() ? deepStrengthLabel(deepStrength(DenoiseMode::manual(level)))
                        : percentLabel(level * 10.0);
}

// Where the slider stands in automatic mode.
double EditingSession::restingLevel() const {
  return isDeepModeOn() ? kDeepLevelAsMeasured : kLowestLevel;
}

bool EditingSession::isNoiseBeyondLevels() const {
  return !isDeepModeOn() && deepNoise_ && deepNoise_->isBeyondLevels();
}

std::optional<NoiseGauge> EditingSession::noiseGauge() const {
  if (!hasPhoto()) return std::nullopt;
  const DenoiseMode mode =
      isAutoModeOn()
          ? DenoiseMode::automatic()
          : DenoiseMode::manual(denoiseLevelForSliderValue(parameters_.sliderCustomDenoise));
  return velmara::noiseGauge(
      {psnrOfRealImage_, currentZooomFactor_, mapping_, mode, isDeepModeOn(), deepNoise_});
}

void EditingSession::btnAutoModeTapped(bool isOn) {
  if (!isOn || isRunningAlgorithm() || !hasPhoto()) {
    parameters_.isAutoModeOn = true;
    Q_EMIT parametersChanged();
    return;
  }
  parameters_.sliderCustomDenoise = restingLevel();
  denoiseImageWithSliderValue(1, 1, true);
}

void EditingSession::btnDeepModeTapped(bool isOn) {
  if (!isRunningAlgorithm() && hasPhoto()) {
    parameters_.isDeepModeOn = isOn;
    if (isAutoModeOn()) parameters_.sliderCustomDenoise = restingLevel();
    parameters_.txtCustomDenoiseVal = levelLabel(parameters_.sliderCustomDenoise);
    seletedPhotoToBeFilteredIsChanged();
  }
  Q_EMIT parametersChanged();
}

void EditingSession::sliderCustomDenoiseAction(double value) {
  if (!hasPhoto()) return;
  if (isRunningAlgorithm()) {
    nextLevel_ = value;
    Q_EMIT parametersChanged();
    return;
  }
  const int level = denoiseLevelForSliderValue(value);
  parameters_.isAutoModeOn = false;
  parameters_.sliderCustomDenoise = value;
  parameters_.txtCustomDenoiseVal = levelLabel(value);
  denoiseImageWithSliderValue(DenoiseMode::kManualThreshold, level, false);
}

void EditingSession::btnSoftModeAction() {
  flagDenoiseModeSelected_ = 0;
  sliderCustomDenoiseAction(sliderCustomDenoise());
}

void EditingSession::btnHardModeAction() {
  flagDenoiseModeSelected_ = 1;
  sliderCustomDenoiseAction(sliderCustomDenoise());
}

void EditingSession::setRegion(const Image& region, float currentZooomFactor,
                               const ShownPlace& place) {
  region_ = region;
  place_ = place;
  currentZooomFactor_ = currentZooomFactor;
}

void EditingSession::setSelectedImageFileToProccessing(const PhotoFile& region) {
  selectedImageFileToProccessing_ = region;
  Q_EMIT selectedImageFileToProccessingChanged();
}

void EditingSession::seletedPhotoToBeFilteredIsChanged() {
  // A region may have been cut when an export began: it must not give the run's controls back.
  if (isRunningAlgorithm() || !selectedImageFile_) return;
  if (!isExportingPhoto() && !region_.isValid()) return;
  services_.jobs.log("seletedPhotoToBeFilteredIsChanged!!");
  runState_.changeControls(controlsWithPhoto);
  Q_EMIT photoShown(*selectedImageFile_);
  if (isAutoModeOn()) {
    services_.jobs.log("before denoiseImageWithSliderValue!!");
    denoiseImageWithSliderValue(1, 1, true);
    services_.jobs.log("after denoiseImageWithSliderValue!!");
  } else {
    sliderCustomDenoiseAction(sliderCustomDenoise());
  }
}

void EditingSession::denoiseImageWithSliderValue(int thresholdValue, int denoiseLevelValue,
                                                 bool autoMode) {
  const bool isPreview = state_ == EditState::kUnsaved || state_ == EditState::kSaved;
  if (isRunningAlgorithm() || (!isPreview && !isExportingPhoto())) return;
  lastExportedImage_ = {};
  // What the automatic mode chooses is known when the run has ended.
  if (autoMode && !parameters_.isAutoModeOn) parameters_.txtCustomDenoiseVal.clear();
  parameters_.txtDenoiseMode = (autoMode ? tr("Auto") : tr("Manual")).toStdString();
  runState_.denoisingProcessStarted();
  take(EditEvent::kRunStarted);
  applyOpenCVDenoiseAlgorithmWithSliderValue(thresholdValue, denoiseLevelValue, autoMode);
}

SigmaThreshold EditingSession::getSigmaTresholdParamDictForPSNR(double psnr, bool isAutoMode,
                                                                int thrsholdVal,
                                                                int denoiseLevelValue) {
  const MappedParameters mapped = mapNoiseToParameters(
      psnr, {isAutoMode, thrsholdVal, denoiseLevelValue}, isExportingPhoto(), mapping_);
  mapping_ = mapped.mapping;
  return mapped.parameters;
}

void EditingSession::applyOpenCVDenoiseAlgorithmWithSliderValue(int thresholdValue,
                                                                int denoiseLevelValue,
                                                                bool autoMode) {
  parameters_.isAutoModeOn = autoMode;
  Q_EMIT parametersChanged();
  PhotoJobRequest request;
  request.path = photo_.record.filePath;
  request.photo = photo_;
  request.mode = {autoMode, thresholdValue, denoiseLevelValue};
  request.psnrOfRealImage = psnrOfRealImage_;
  request.mapping = mapping_;
  request.isDeep = isDeepModeOn();
  request.deepNoise = deepNoise_;
  request.calibrates = !isDeepModeOn();
  request.pixelsProcessRate = pixelsProcessRate_;
  if (isExportingPhoto()) {
    request.output = output();
    startJob(std::move(request), &EditingSession::exportFinished);
  } else {
    isResultWanted_ = true;
    isCancelled_ = false;
    request.region = region_;
    request.place = place_;
    request.currentZooomFactor = currentZooomFactor_;
    startJob(std::move(request), &EditingSession::previewRunFinished);
  }
  // The other filter's speed says nothing of this one.
  if (isDeepModeOn()) {
    runState_.startProgress(1.0, [job = job_] { return job->progress(); });
  }
}

void EditingSession::startJob(PhotoJobRequest request,
                              void (EditingSession::*finished)(const PhotoJobResult&)) {
  const auto isCurrent = [this, alive = std::weak_ptr(alive_), number = ++jobNumber_] {
    return !alive.expired() && number == jobNumber_;
  };
  if (job_ != nullptr) job_->cancel();
  PhotoJobListener listener;
  listener.calibrated = [this, isCurrent](std::int64_t rate) {
    if (!isCurrent()) return;
    pixelsProcessRate_ = rate;
    setupAndShowProgressBarViewForCurrentImage();
  };
  listener.finished = [this, isCurrent, finished](const PhotoJobResult& result) {
    if (!isCurrent()) return;
    job_.reset();
    (this->*finished)(result);
  };
  job_ = PhotoJob::start(std::move(request), services_.jobs, std::move(listener));
}

void EditingSession::dropJob() {
  ++jobNumber_;
  if (job_ != nullptr) job_->cancel();
  job_.reset();
}

// A preview that is past stopping is not shown either; a file that is written by then is.
void EditingSession::cancelRun() {
  if (!isRunningAlgorithm() || job_ == nullptr) return;
  isCancelled_ = true;
  job_->cancel();
}

void EditingSession::dropResultInFlight() {
  isResultWanted_ = false;
}

void EditingSession::setupAndShowProgressBarViewForCurrentImage() {
  const Size size = isExportingPhoto() ? Size{static_cast<double>(photo_.record.width),
                                              static_cast<double>(photo_.record.height)}
                                       : region_.size();
  const double estimate = estimatedCompletionTime(static_cast<std::int64_t>(size.width),
                                                  static_cast<std::int64_t>(size.height),
                                                  pixelsProcessRate_, isExportingPhoto());
  services_.jobs.log(estimateLogLine(pixelsProcessRate_, estimate));
  runState_.startProgress(estimate);
}

void EditingSession::takeMeasurements(const PhotoJobResult& result) {
  psnrOfRealImage_ = result.psnrOfRealImage;
  mapping_ = result.mapping;
  deepNoise_ = result.deepNoise;
  pixelsProcessRate_ = result.pixelsProcessRate;
}

void EditingSession::previewRunFinished(const PhotoJobResult& result) {
  using End = PhotoJobResult::End;
  takeMeasurements(result);
  const bool isFinished = result.end == End::finished && !isCancelled_;
  if (isFinished && isResultWanted_) {
    if (isAutoModeOn() || isDeepModeOn()) {
      parameters_.txtCustomDenoiseVal = labelAfter(result);
    }
    Q_EMIT parametersChanged();
    shownParameters_ = parameters_;
    denoisingProcessCompletedWithOutputImage(result.image);
    return;
  }
  if (!isResultWanted_) Q_EMIT previewResultDropped();
  if (!isFinished) {
    // What was shown before is what is seen still.
    nextLevel_.reset();
    if (shownParameters_) parameters_ = *shownParameters_;
    Q_EMIT parametersChanged();
  }
  runState_.enableActionsInDeafultModeAfterDelay();
  if (result.end == End::failed && !std::exchange(hasToldFailure_, true)) {
    services_.alerts.runModal(previewFailedAlert(result.reason));
  }
}

std::string EditingSession::labelAfter(const PhotoJobResult& result) const {
  if (!isDeepModeOn()) {
    return result.parameters ? strengthLabel(result.parameters->sigmaVal) : std::string();
  }
  if (result.deepNoise && result.deepNoise->isNone()) return noNoiseLabel();
  return levelLabel(parameters_.sliderCustomDenoise);
}

void EditingSession::denoisingProcessCompletedWithOutputImage(const Image& image) {
  if (!image.isValid()) return;
  services_.jobs.log("Denoising Done !!");
  Q_EMIT previewFinished(image);
  runState_.enableActionsInDeafultModeAfterDelay();
}

void EditingSession::runWasEnded() {
  take(EditEvent::kRunEnded);
  if (isRunningAlgorithm()) return;
  if (std::exchange(hasExported_, false)) Q_EMIT exportEnded();
  if (const auto level = std::exchange(nextLevel_, std::nullopt)) sliderCustomDenoiseAction(*level);
  measureNoiseMeanwhile();
}

// For who looks at a photo that the levels leave as it is; whatever else is asked for ends it.
void EditingSession::measureNoiseMeanwhile() {
  const bool isIdle = state_ == EditState::kUnsaved || state_ == EditState::kSaved;
  if (!isIdle || isRunningAlgorithm() || deepNoise_ || !photo_.image.isValid()) return;
  PhotoJobRequest request;
  request.path = photo_.record.filePath;
  request.photo = photo_;
  request.filters = false;
  request.isDeep = true;
  startJob(std::move(request), &EditingSession::noiseWasMeasured);
}

void EditingSession::noiseWasMeasured(const PhotoJobResult& result) {
  if (result.end != PhotoJobResult::End::finished) return;
  deepNoise_ = result.deepNoise;
  Q_EMIT parametersChanged();
}

}  // namespace velmara
