#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "base/job_control.h"
#include "session/batch/memory_budget.h"
#include "session/photo_job.h"

namespace velmara {

/// Where the result of one photo of a batch goes.
struct BatchTarget {
  /// The file and its format.
  PhotoOutput output;
  /// A file that is there is kept, and the photo with it: there is nothing to do.
  bool keepsExisting = false;
};

/// What became of one photo of a batch.
struct BatchOutcome {
  /// Skipped: its result was there already, and was to be kept.
  enum class End { written, skipped, failed, cancelled };

  /// How it ended.
  End end = End::failed;
  /// Why it failed, or was skipped, in words.
  std::string reason;
  PhotoOutput output;
  /// By the clock, from the opening of the photo to the end of its work.
  double seconds = 0.0;
  /// All zero where the job was not begun.
  PhotoJobResult job;
};

/// What a batch is to do. The functions are called on the batch's own threads, one at a time.
struct BatchRequest {
  /// Their files.
  std::vector<std::string> photos;
  /// What a photo is to go through, without the photo itself and the output.
  std::function<PhotoJobRequest(std::size_t index)> job;
  /// Where its result goes, or why it cannot; asked in the order of the photos. The photo's pixels
  /// are not read yet.
  std::function<Result<BatchTarget>(std::size_t index, const LoadedPhoto& photo)> target;
  /// May be empty.
  std::function<void(std::size_t index)> began;
  /// Once for each photo that began, in the order of their ends.
  std::function<void(std::size_t index, const BatchOutcome& outcome)> ended;
  /// How many photos are worked on at once, at least 1, and the memory in bytes that they may take
  /// together. A photo that needs more is worked on alone.
  int jobs = 1;
  std::int64_t memory = 0;
};

/// A photo under way.
struct BatchProgress {
  /// Which of the batch, how much of it is done (0.0 to 1.0), and since when it is under way.
  std::size_t index = 0;
  double progress = 0.0;
  double seconds = 0.0;
};

/// Many photos through the one job, several at once, so that some are decoded and encoded while
/// others are filtered. Any thread may call anything but run().
class BatchRun {
 public:
  /// All of it must outlive the run; `control` cancels it.
  BatchRun(BatchRequest request, const PhotoJobServices& services, JobControl& control);

  /// Works on all photos and returns when they have ended. Not on the main thread, once.
  void run();

  /// While paused no photo begins; those under way go on to their end.
  void setPaused(bool isPaused);

  /// The photos that are worked on at the moment.
  std::vector<BatchProgress> underWay() const;
  /// The part of all that is done, 0.0 to 1.0: each photo counts the same.
  double progress() const;

 private:
  struct Work {
    JobControl control;
    std::chrono::steady_clock::time_point begin;
    /// What it has of the budget.
    std::optional<std::int64_t> memory = {};
  };

  void work();
  std::optional<std::size_t> next();
  BatchOutcome treat(std::size_t index, Work& work);
  Result<BatchTarget> targetInTurn(std::size_t index, const Result<LoadedPhoto>& photo);
  void endTurn(std::size_t index);
  bool waitFor(std::unique_lock<std::mutex>& lock, const std::function<bool()>& isThere);

  const BatchRequest request_;
  const PhotoJobServices& services_;
  JobControl& control_;
  MemoryBudget memory_;
  mutable std::mutex mutex_;
  std::condition_variable changed_;
  /// Guarded by mutex_.
  bool isPaused_ = false;
  std::size_t next_ = 0;
  std::size_t turn_ = 0;
  std::size_t ended_ = 0;
  std::map<std::size_t, Work*> underWay_;
  /// What is told is told by one thread at a time.
  std::mutex telling_;
};

/// As many photos at once as there are processors, and at least two, so that one is read or written
/// while the other is filtered. More gained nothing where it was measured, and took more memory.
int usualBatchJobs();

}  // namespace velmara
