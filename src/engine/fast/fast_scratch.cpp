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

std::unique_ptr<FastScratch> FastScratch::allocate(const FastPlan& plan) {
  std::unique_ptr<FastScratch> scratch(new (std::nothrow) FastScratch);
  if (scratch == nullptr) return nullptr;
  FastScratch& s = *scratch;
  const std::size_t distanceBytes = plan.narrow ? sizeof(std::uint16_t) : sizeof(std::uint32_t);
  const std::size_t candidates = plan.slots.size();
  s.channels_ = static_cast<std::size_t>(plan.channels);
  s.sourceColumns_ = plan.sourceColumns;
  s.distanceColumns_ = plan.distanceColumns;
  s.sourceRows_ = plan.sourceRows;
  s.squareRows_ = plan.keepsSquares ? static_cast<std::size_t>(plan.t) : 1;

  Sections sections;
  const std::size_t sourceRows = static_cast<std::size_t>(plan.sourceRows) * s.channels_;
  s.samples_ = sections.add(sourceRows, plan.sourceColumns, sizeof(std::int16_t));
  s.centred_ = sections.add(sourceRows, plan.sourceColumns, sizeof(float));
  s.weights_ = sections.add(plan.weightRows, plan.distanceColumns, sizeof(float));
  s.indices_ = sections.add(plan.weightRows, plan.distanceColumns, distanceBytes);
  s.squares_ = sections.add(plan.keepsSquares ? plan.shifts.size() * s.squareRows_ : 0,
                            plan.distanceColumns, distanceBytes);
  s.columnSums_ = sections.add(1, plan.distanceColumns, distanceBytes);
  s.output_ = sections.add(s.channels_, plan.distanceColumns, 1);
  s.exactWeights_ = sections.add(candidates, kMostLanes, sizeof(double));
  s.ones_ = sections.add(1, plan.distanceColumns, sizeof(float));
  s.zeros_ = sections.add(1, plan.distanceColumns, distanceBytes);
  s.weightPointers_ = sections.add(1, candidates, sizeof(void*));
  s.indexPointers_ = sections.add(1, candidates, sizeof(void*));

  s.memory_.reset(static_cast<std::uint8_t*>(std::aligned_alloc(64, sections.total())));
  if (s.memory_ == nullptr) return nullptr;
  std::memset(s.memory_.get(), 0, sections.total());
  float* ones = s.at<float>(s.ones_, 0, 0);
  std::fill(ones, ones + plan.distanceColumns, 1.0F);
  return scratch;
}

}  // namespace velmara
