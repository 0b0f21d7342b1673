#include "engine/fast/fast_scratch.h"

#include <algorithm>
#include <cstring>
#include <new>

namespace velmara {
namespace {

// Adds up sections of whole rows, each row a multiple of 64 bytes.
class Sections {
 public:
  std::size_t add(std::size_t rows, std::size_t columns, std::size_t elementBytes) {
    const std::size_t start = total_;
    total_ += rows * ((columns * elementBytes + 63) / 64 * 64);
    return start;
  }
  std::size_t total() const { return total_; }

 private:
  std::size_t total_ = 0;
};

}  // namespace

std::size_t FastScratch::layOut(const FastPlan& plan) {
  const std::size_t distanceBytes = plan.narrow ? sizeof(std::uint16_t) : sizeof(std::uint32_t);
  const std::size_t candidates = plan.slots.size();
  channels_ = static_cast<std::size_t>(plan.channels);
  sourceColumns_ = plan.sourceColumns;
  distanceColumns_ = plan.distanceColumns;
  sourceRows_ = plan.sourceRows;
  squareRows_ = plan.keepsSquares ? static_cast<std::size_t>(plan.t) : 1;

  Sections sections;
  const std::size_t sourceRows = static_cast<std::size_t>(plan.sourceRows) * channels_;
  samples_ = sections.add(sourceRows, plan.sourceColumns, sizeof(std::int16_t));
  centred_ = sections.add(sourceRows, plan.sourceColumns, sizeof(float));
  weights_ = sections.add(plan.weightRows, plan.distanceColumns, sizeof(float));
  indices_ = sections.add(plan.weightRows, plan.distanceColumns, distanceBytes);
  squares_ = sections.add(plan.keepsSquares ? plan.shifts.size() * squareRows_ : 0,
                          plan.distanceColumns, distanceBytes);
  columnSums_ = sections.add(1, plan.distanceColumns, distanceBytes);
  output_ = sections.add(1, plan.distanceColumns, channels_);
  undecided_ = sections.add(1, plan.distanceColumns, sizeof(std::uint32_t));
  groups_ = sections.add(1, plan.distanceColumns, sizeof(std::int32_t));
  exactWeights_ = sections.add(candidates, kMostLanes, sizeof(double));
  ones_ = sections.add(1, plan.distanceColumns, sizeof(float));
  zeros_ = sections.add(1, plan.distanceColumns, distanceBytes);
  weightPointers_ = sections.add(1, candidates, sizeof(void*));
  indexPointers_ = sections.add(1, candidates, sizeof(void*));
  return sections.total();
}

std::size_t FastScratch::bytesFor(const FastPlan& plan) {
  return FastScratch().layOut(plan);
}

std::unique_ptr<FastScratch> FastScratch::allocate(const FastPlan& plan) {
  std::unique_ptr<FastScratch> scratch(new (std::nothrow) FastScratch);
  if (scratch == nullptr) return nullptr;
  const std::size_t bytes = scratch->layOut(plan);
  scratch->memory_.reset(static_cast<std::uint8_t*>(std::aligned_alloc(64, bytes)));
  if (scratch->memory_ == nullptr) return nullptr;
  std::memset(scratch->memory_.get(), 0, bytes);
  float* ones = scratch->at<float>(scratch->ones_, 0, 0);
  std::fill(ones, ones + plan.distanceColumns, 1.0F);
  return scratch;
}

}  // namespace velmara
