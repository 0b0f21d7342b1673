#pragma once

#include <QObject>

#include <functional>
#include <memory>

#include "base/task_queue.h"
#include "platform/timer.h"
#include "session/controls.h"

namespace velmara {

/// Where a run stands.
enum class RunPhase { kIdle, kWaitingToSettle, kRunning, kFinishingTheBar };

/// The running flag, what it takes away from the user, the progress bar, and the delay before the
/// visible region is denoised. Main thread only.
class RunState : public QObject {
  Q_OBJECT

 public:
  /// The timers must outlive this object.
  RunState(Scheduler& timers, LogSink log);
  ~RunState() override;

  /// The screen is built, or built anew with another photo: no run, nothing waiting, the controls
  /// as they are without a photo.
  void reset();

  /// Whether a run is under way, where it stands, and what it leaves of the controls.
  bool isRunningAlgorithm() const { return isRunningAlgorithm_; }
  RunPhase phase() const;
  const ControlStates& controls() const { return controls_; }
  /// The bar's maximum and its value, in seconds.
  double estimatedProgressCompletionTime() const { return estimatedProgressCompletionTime_; }
  double progressTimeCounter() const { return progressTimeCounter_; }

  /// Set before every preview request, cleared when the controls change their mode.
  bool isBeforeCallingAlgo = false;

  /// Changes the controls by one of the functions of controls.h and has them applied.
  void changeControls(ControlStates (*change)(ControlStates));

  /// A run starts. What an earlier run still had to put back is given up: the new run will.
  void denoisingProcessStarted();
  /// The same for work that filters nothing.
  void workStarted();
  /// Only the controls of a run, without one.
  void disableActionsInRunningMode();
  /// The run is over: the bar is walked to its end and hidden 0.3 s later, the controls come back
  /// and the result is laid over the preview.
  void enableActionsInDeafultMode();
  /// The same 0.1 s from now.
  void enableActionsInDeafultModeAfterDelay();

  /// Shows the bar for a run of an estimated number of seconds and moves it in 50 steps, or to the
  /// part of the work that is done where a function tells it.
  void startProgress(double estimate, std::function<double()> partDone = {});
  /// One tick of the bar; the one after the end of the run hides it.
  void updateProgress();
  /// Walks the bar to its end at once.
  void showProgressBarCompleted();
  /// Stops the bar and hides it.
  void hideProgress();

  /// (Re)starts the 1.5 s until performDenoiseOperation and silences what must wait.
  void startTimerEvent();
  /// Cancels it and returns to the default mode.
  void stopTimerEvent();
  /// Forgets it, nothing else.
  void invalidateTimer();

 Q_SIGNALS:
  /// The controls are to be made so.
  void controlsChanged(const ControlStates& states);
  /// The bar is shown, with its value at 0.
  void progressShown(double maximum);
  /// May lie a little beyond the maximum.
  void progressChanged(double value);
  /// The bar is to go.
  void progressHidden();
  /// The controls are back: the result, if there is a valid one, is to be laid over the preview.
  void defaultModeEntered();
  /// After that, if a run has ended.
  void runEnded();
  /// Zoom or pan have settled: what performDenoiseOperation waits for.
  void settled();

 private:
  Scheduler& timers_;
  LogSink log_;
  ControlStates controls_ = controlsWithoutPhoto();
  bool isRunningAlgorithm_ = false;
  double estimatedProgressCompletionTime_ = 0.0;
  double progressTimeCounter_ = 0.0;
  std::function<double()> partDone_;
  std::unique_ptr<Timer> progressTimer_;
  std::unique_ptr<Timer> timer_;
};

}  // namespace velmara
