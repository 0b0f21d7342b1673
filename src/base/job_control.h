#pragma once

#include <atomic>

namespace velmara {

/// What whoever waits for long work and whoever does it share: the wish to stop, and how far it is.
/// Any thread.
class JobControl {
 public:
  JobControl() = default;
  /// A part of other work, which it must not outlive: it is cancelled with the whole, and its
  /// progress is the whole's from one figure to another.
  JobControl(JobControl& whole, double from, double to) : whole_(&whole), from_(from), to_(to) {}
  /// One of several works at once that make up the whole: cancelled with it, but its progress is
  /// its own.
  explicit JobControl(JobControl& whole) : whole_(&whole), isOneOfSeveral_(true) {}
  JobControl(const JobControl&) = delete;
  JobControl& operator=(const JobControl&) = delete;

  /// Asks the work to stop as soon as it can; it may end by itself before that.
  void cancel() { isCancelled_.store(true, std::memory_order_relaxed); }
  /// Whether this or the whole it is a part of was asked to stop.
  bool isCancelled() const {
    return isCancelled_.load(std::memory_order_relaxed) ||
           (whole_ != nullptr && whole_->isCancelled());
  }

  /// The part of the work that is done, 0.0 to 1.0.
  double progress() const { return progress_.load(std::memory_order_relaxed); }
  /// How much is done, 0.0 to 1.0; of a part also told to its whole.
  void setProgress(double progress) {
    progress_.store(progress, std::memory_order_relaxed);
    if (whole_ == nullptr || isOneOfSeveral_) return;
    whole_->setProgress(from_ + (to_ - from_) * progress);
  }

 private:
  JobControl* whole_ = nullptr;
  double from_ = 0.0, to_ = 1.0;
  bool isOneOfSeveral_ = false;
  std::atomic<bool> isCancelled_{false};
  std::atomic<double> progress_{0.0};
};

}  // namespace velmara
