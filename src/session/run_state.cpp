#include "session/run_state.h"

#include <utility>

#include "session/progress_estimate.h"

namespace velmara {
namespace {

constexpr Seconds kSettlingTime{1.5};
constexpr Seconds kBackToDefaultMode{0.1};
constexpr Seconds kHideBar{0.3};
constexpr std::string_view kEnableActions = "enableActionsInDeafultMode";

}  // namespace

RunState::RunState(RunScreen& screen, Scheduler& timers, LogSink log)
    : screen_(screen), timers_(timers), log_(std::move(log)) {}

RunState::~RunState() {
  timers_.cancel(this);
}

void RunState::reset() {
  timers_.cancel(this);
  progressTimer_.reset();
  timer_.reset();
  isRunningAlgorithm_ = false;
  isBeforeCallingAlgo = false;
  controls_ = controlsWithoutPhoto();
  screen_.applyControls(controls_);
  screen_.hideProgressBar();
}

RunPhase RunState::phase() const {
  if (isRunningAlgorithm_) return RunPhase::kRunning;
  if (timer_ != nullptr) return RunPhase::kWaitingToSettle;
  return progressTimer_ != nullptr ? RunPhase::kFinishingTheBar : RunPhase::kIdle;
}

void RunState::changeControls(ControlStates (*change)(ControlStates)) {
  controls_ = change(controls_);
  screen_.applyControls(controls_);
}

void RunState::denoisingProcessStarted() {
  timers_.cancel(this, kEnableActions);
  isRunningAlgorithm_ = true;
  disableActionsInRunningMode();
  log_("Denoising Started");
}

void RunState::disableActionsInRunningMode() {
  isBeforeCallingAlgo = false;
  changeControls(controlsInRunningMode);
}

void RunState::enableActionsInDeafultMode() {
  isRunningAlgorithm_ = false;
  showProgressBarCompleted();
  timers_.after(this, "updateProgress", kHideBar, [this] { updateProgress(); });
  isBeforeCallingAlgo = false;
  changeControls(controlsInDefaultMode);
  screen_.setUpPreviewForDenoisedImage();
}

void RunState::enableActionsInDeafultModeAfterDelay() {
  timers_.after(this, kEnableActions, kBackToDefaultMode, [this] { enableActionsInDeafultMode(); });
}

void RunState::startProgress(double estimate) {
  estimatedProgressCompletionTime_ = estimate;
  progressTimeCounter_ = 0.0;
  screen_.showProgressBar(estimate);
  progressTimer_ =
      timers_.start(Seconds(progressTickInterval(estimate)), true, [this] { updateProgress(); });
}

void RunState::updateProgress() {
  if (isRunningAlgorithm_) {
    progressTimeCounter_ =
        progressAfterTick(progressTimeCounter_, estimatedProgressCompletionTime_);
    screen_.setProgressBarValue(progressTimeCounter_);
    return;
  }
  screen_.setProgressBarValue(progressTimeCounter_);
  if (progressTimeCounter_ >= estimatedProgressCompletionTime_) {
    log_("Progress Completed");
    progressTimer_.reset();
    screen_.hideProgressBar();
  }
}

void RunState::showProgressBarCompleted() {
  for (const double value : finishWalk(progressTimeCounter_, estimatedProgressCompletionTime_)) {
    screen_.setProgressBarValue(value);
  }
  progressTimeCounter_ = estimatedProgressCompletionTime_;
}

void RunState::startTimerEvent() {
  timer_ = timers_.start(kSettlingTime, false, [this] {
    invalidateTimer();
    screen_.performDenoiseOperation();
  });
  changeControls(controlsWhileSettling);
}

void RunState::stopTimerEvent() {
  invalidateTimer();
  enableActionsInDeafultMode();
}

void RunState::invalidateTimer() {
  timer_.reset();
}

}  // namespace velmara
