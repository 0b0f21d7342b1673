#include "session/progress_estimate.h"

#include <algorithm>

#include "base/fixed_text.h"

namespace velmara {
namespace {

constexpr std::int64_t kTicks = 50;
constexpr double kWaitingShare = 30.0;
constexpr double kLeast = 1.0;
constexpr double kExportBonus = 2.0;

}  // namespace

double estimatedCompletionTime(std::int64_t width, std::int64_t height,
                               std::int64_t pixelsProcessRate, bool isExportingPhoto) {
  const std::int64_t seconds = pixelsProcessRate > 0 ? width * height / pixelsProcessRate : 0;
  const double estimate = seconds == 0 ? kLeast : static_cast<double>(seconds);
  return isExportingPhoto ? estimate + kExportBonus : estimate;
}

std::string estimateLogLine(std::int64_t pixelsProcessRate, double estimate) {
  return "Pixel Rate " + std::to_string(pixelsProcessRate) +
         " & Current Image Estimated Process Time " + fixedText(estimate, 6);
}

double progressTickInterval(double estimate) {
  return estimate / double{kTicks};
}

double progressAfterTick(double counter, double estimate) {
  return std::min(counter + progressTickInterval(estimate), estimate - estimate / kWaitingShare);
}

std::vector<double> finishWalk(double counter, double estimate) {
  std::vector<double> values;
  const std::int64_t step = static_cast<std::int64_t>(estimate) / kTicks;
  for (auto position = static_cast<std::int64_t>(counter);
       estimate >= static_cast<double>(position); position += step + 1) {
    values.push_back(static_cast<double>(position + step));
  }
  return values;
}

}  // namespace velmara
