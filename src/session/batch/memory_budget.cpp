#include "session/batch/memory_budget.h"

#include <algorithm>
#include <sstream>

#include "platform/whole_file.h"

namespace velmara {
namespace {

// Bytes a pixel, by what was measured: a plain photo's rows, their padded copy, the result and its
// file; the canvas and the turned copy of one that is not plain; the deep method's estimates.
constexpr std::int64_t kPlain = 16;
constexpr std::int64_t kDeep = 42;
// Libraries, stacks, tables.
constexpr std::int64_t kEachJob = 32 << 20;
constexpr std::int64_t kLeast = 512 << 20;

}  // namespace

std::int64_t memoryOfJob(const PhotoJobRequest& request, const LoadedPhoto& photo) {
  const auto pixels = static_cast<std::int64_t>(photo.fullSize.width * photo.fullSize.height);
  return kEachJob + pixels * (request.isDeep ? kDeep : kPlain);
}

std::int64_t usualBatchMemory() {
  constexpr std::size_t kLargest = 1 << 16;
  std::istringstream lines(readSmallFile("/proc/meminfo", kLargest).value_or(""));
  std::string word;
  std::int64_t kilobytes = 0;
  while (lines >> word && word != "MemAvailable:") {
  }
  lines >> kilobytes;
  return std::max(kLeast, kilobytes * 1024 / 2);
}

}  // namespace velmara
