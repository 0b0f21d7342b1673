#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace velmara {

/// How long a run will take and how the progress bar moves meanwhile. Times are in seconds; the
/// bar's maximum is the estimate E.

/// E: pixels over pixels per second in whole numbers, at least 1; exporting takes 2 more. A rate
/// that is not positive counts as unknown and gives the least.
double estimatedCompletionTime(std::int64_t width, std::int64_t height,
                               std::int64_t pixelsProcessRate, bool isExportingPhoto);

/// "Pixel Rate %ld & Current Image Estimated Process Time %f".
std::string estimateLogLine(std::int64_t pixelsProcessRate, double estimate);

/// The time between two ticks: the bar moves in 50 steps.
double progressTickInterval(double estimate);

/// The counter after one tick of a run under way; it waits at 29/30 of the bar until the run ends.
double progressAfterTick(double counter, double estimate);

/// The values that the bar is walked through when a run ends, from the counter to the end. The last
/// may lie beyond the maximum.
std::vector<double> finishWalk(double counter, double estimate);

}  // namespace velmara
