#include "session/photo_job_plan.h"

namespace velmara {
namespace {

// Roughly how long the steps take in comparison; the deep method has two of its own.
constexpr std::array<double, kPhotoSteps> kShares = {30.0, 20.0, 5.0, 0.0, 40.0, 2.0, 20.0, 3.0};
constexpr std::array<double, kPhotoSteps> kDeepShares = {30.0,  20.0, 60.0, 0.0,
                                                         600.0, 2.0,  20.0, 3.0};

}  // namespace

PhotoJobPlan::PhotoJobPlan(const PhotoJobRequest& request) : isDeep_(request.isDeep) {
  const bool filters = request.filters && !request.filtered.isValid();
  const bool isMeasured = isDeep_
                              ? request.deepNoise.has_value()
                              : request.parameters.has_value() || request.psnrOfRealImage != 0.0F;
  const bool measures = (filters || isDeep_) && !isMeasured;
  needsPixels_ =
      !request.filters || (filters && (request.isExportingPhoto() || isDeep_)) || measures;
  const bool hasPixels = request.photo && request.photo->image.isValid();
  const bool writes = request.output.has_value();
  has_ = {!request.photo || (needsPixels_ && !hasPixels),
          request.calibrates,
          measures,
          filters,
          filters,
          writes,
          writes,
          writes && !request.output->path.empty()};
}

double PhotoJobPlan::shareUpTo(std::size_t end) const {
  double done = 0.0;
  double all = 0.0;
  for (std::size_t i = 0; i < kPhotoSteps; ++i) {
    if (!has_[i]) continue;
    const double share = isDeep_ ? kDeepShares[i] : kShares[i];
    all += share;
    if (i < end) done += share;
  }
  return all > 0.0 ? done / all : 0.0;
}

}  // namespace velmara
