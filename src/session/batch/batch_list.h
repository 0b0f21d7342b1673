#pragma once

#include <QObject>

#include <chrono>
#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/timer.h"
#include "session/batch/batch_run.h"
#include "session/batch/batch_targets.h"
#include "session/batch/found_photos.h"
#include "session/batch/photo_facts.h"

namespace velmara {

/// What a photo goes through.
struct Treatment {
  /// Automatic or a level, and whether the deep method takes the place of the levels' filter.
  DenoiseMode mode = DenoiseMode::automatic();
  bool isDeep = false;
};

/// A photo in the list of a batch.
struct BatchEntry {
  /// Waiting for a run, in one, or how the last one ended for it.
  enum class State { waiting, working, written, skipped, failed, cancelled };

  /// The file.
  BatchPhoto photo;
  /// Its own; without one that of all.
  std::optional<Treatment> treatment = {};
  State state = State::waiting;
  /// Why it failed or was skipped, in words.
  std::string reason = {};
  /// 0.0 to 1.0 while it is worked on.
  double progress = 0.0;
  /// Once it was looked at.
  std::optional<PhotoFacts> facts = {};
  /// The result's file, once it is written.
  std::string output = {};
};

/// How many photos of a batch ended how.
struct BatchCounts {
  /// The photos of the run, and of them those that ended so.
  int all = 0, written = 0, skipped = 0, failed = 0, cancelled = 0;
};

/// The photos that are to be denoised together, and their run: a list that is filled, looked
/// through in the background for sizes, noise and small pictures, and carried out by a BatchRun.
/// While it runs photos may be added (they wait for the next run) but none removed. Main thread.
class BatchList : public QObject {
  Q_OBJECT

 public:
  /// All of it must outlive the list and its run's last photo.
  BatchList(PhotoJobServices services, Scheduler& timers, const Clock& clock = systemClock());
  /// What is under way is cancelled, and its end not waited for.
  ~BatchList() override;

  /// In the order they were added.
  const std::vector<BatchEntry>& entries() const { return entries_; }
  /// Adds photos and those in folders, each file once; they are looked for in the background.
  void add(std::vector<std::string> paths);
  bool isSearching() const { return searches_ > 0; }
  /// By their indices, in any order. Not while it runs.
  void remove(const std::vector<std::size_t>& indices);
  void setTreatment(std::size_t index, std::optional<Treatment> treatment);

  /// Which photos a run would be of: all that have no result yet or, if all have one, all.
  std::vector<std::size_t> photosToRun() const;
  /// Begins that run.
  void start(const Treatment& treatmentOfAll, BatchNaming naming);
  void setPaused(bool isPaused);
  /// Ends it soon, with no file left of what was under way.
  void cancel();

  /// Whether a run is under way, and whether it is held.
  bool isRunning() const { return run_ != nullptr; }
  bool isPaused() const { return isPaused_; }
  /// Of the run, 0.0 to 1.0.
  double progress() const;
  /// At the pace so far; nothing while there is too little to tell by, and while it is paused.
  std::optional<Seconds> timeLeft() const;
  /// Of the last run's photos.
  BatchCounts counts() const;

 Q_SIGNALS:
  /// Photos came or went.
  void entriesChanged();
  void entryChanged(int index);
  /// A search or a run began or ended, was paused or went on.
  void stateChanged();
  /// From time to time while it runs.
  void progressed();

 private:
  struct Run;
  struct Token {};

  void addFound(const std::vector<BatchPhoto>& photos);
  void lookAtNext();
  void began(std::size_t index);
  void ended(std::size_t index, BatchOutcome outcome, const PhotoFacts& facts);
  void runEnded();
  void showProgress();
  std::chrono::duration<double> activeTime() const;

  const PhotoJobServices services_;
  Scheduler& timers_;
  const Clock& clock_;
  std::vector<BatchEntry> entries_;
  int searches_ = 0;
  /// What looks for and at photos in the background goes with this.
  std::shared_ptr<JobControl> looking_ = std::make_shared<JobControl>();
  bool isLooking_ = false;

  std::shared_ptr<Run> run_;
  std::vector<std::size_t> lastRun_;
  bool isPaused_ = false;
  std::chrono::steady_clock::time_point begin_;
  std::chrono::steady_clock::time_point pauseBegin_;
  std::chrono::duration<double> paused_{0};
  std::unique_ptr<Timer> ticks_;
  std::shared_ptr<Token> token_ = std::make_shared<Token>();
};

}  // namespace velmara
