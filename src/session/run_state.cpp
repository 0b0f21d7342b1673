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

RunState::RunState(Scheduler& timers, LogSink log) : timers_(timers), log_(std::move(log)) {}

RunState::~RunState() {
  timers_.cancel(this);
}

void RunState::reset() {
  timers_.cancel(this);
  timer_.reset();
  isRunningAlgorithm_ = false;
  isBeforeCallingAlgo = false;
  controls_ = controlsWithoutPhoto();
  Q_EMIT controlsChanged(controls_);
  hideProgress();
}

RunPhase RunState::phase() const {
  if (isRunningAlgorithm_) return RunPhase::kRunning;
  if (timer_ != nullptr) return RunPhase::kWaitingToSettle;
  return progressTimer_ != nullptr ? RunPhase::kFinishingTheBar : RunPhase::kIdle;
}

void RunState::changeControls(ControlStates (*change)(ControlStates)) {
  controls_ = change(controls_);
  Q_EMIT controlsChanged(controls_);
}

void RunState::denoisingProcessStarted() {
  workStarted();
  log_("Denoising Started");
}

void RunState::workStarted() {
  timers_.cancel(this, kEnableActions);
  isRunningAlgorithm_ = true;
  disableActionsInRunningMode();
}

void RunState::disableActionsInRunningMode() {
  isBeforeCallingAlgo = false;
  changeControls(controlsInRunningMode);
}

void RunState::enableActionsInDeafultMode() {
  const bool hasRun = std::exchange(isRunningAlgorithm_, false);
  showProgressBarCompleted();
  timers_.after(this, "updateProgress", kHideBar, [this] { updateProgress(); });
  isBeforeCallingAlgo = false;
  changeControls(controlsInDefaultMode);
  Q_EMIT defaultModeEntered();
  if (hasRun) Q_EMIT runEnded();
}

void RunState::enableActionsInDeafultModeAfterDelay() {
  timers_.after(this, kEnableActions, kBackToDefaultMode, [this] { enableActionsInDeafultMode(); });
}

void RunState::startProgress(double estimate, std::function<double()> partDone) {
  estimatedProgressCompletionTime_ = estimate;
  partDone_ = std::move(partDone);
  progressTimeCounter_ = 0.0;
  Q_EMIT progressShown(estimate);
  progressTimer_ =
      timers_.start(Seconds(progressTickInterval(estimate)), true, [this] { updateProgress(); });
}

void RunState::updateProgress() {
  if (isRunningAlgorithm_) {
    progressTimeCounter_ =
        partDone_ ? partDone_() * estimatedProgressCompletionTime_
                  : progressAfterTick(progressTimeCounter_, estimatedProgressCompletionTime_);
    Q_EMIT progressChanged(progressTimeCounter_);
    return;
  }
  Q_EMIT progressChanged(progressTimeCounter_);
  if (progressTimeCounter_ >= estimatedProgressCompletionTime_) {
    log_("Progress Completed");
    hideProgress();
  }
}

void RunState::hideProgress() {
  progressTimer_.reset();
  Q_EMIT progressHidden();
}

void RunState::showProgressBarCompleted() {
  for (const double value : finishWalk(progressTimeCounter_, estimatedProgressCompletionTime_)) {
    Q_EMIT progressChanged(value);
  }
  progressTimeCounter_ = estimatedProgressCompletionTime_;
}

void RunState::startTimerEvent() {
  timer_ = timers_.start(kSettlingTime, false, [this] {
    invalidateTimer();
    Q_EMIT settled();
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
