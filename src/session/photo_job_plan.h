#pragma once

#include <array>

#include "session/photo_job.h"

namespace velmara {

/// Which steps a request takes, and how far a job is after each of them.
class PhotoJobPlan {
 public:
  /// Looks at the request now, and keeps nothing of it.
  explicit PhotoJobPlan(const PhotoJobRequest& request);

  /// Whether the request takes a step.
  bool has(PhotoStep step) const { return has_[static_cast<std::size_t>(step)]; }
  /// Whether any step looks at the whole photo's pixels.
  bool needsPixels() const { return needsPixels_; }
  /// The part of the whole job that is done before and after a step, 0.0 to 1.0.
  double shareBefore(PhotoStep step) const { return shareUpTo(static_cast<std::size_t>(step)); }
  double shareAfter(PhotoStep step) const { return shareUpTo(static_cast<std::size_t>(step) + 1); }

 private:
  double shareUpTo(std::size_t end) const;

  std::array<bool, kPhotoSteps> has_{};
  bool needsPixels_ = false;
  bool isDeep_ = false;
};

}  // namespace velmara
