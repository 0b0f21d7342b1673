#pragma once

#include <cstdint>
#include <memory>
#include <span>

#include "engine/filter_kernel.h"

namespace velmara {

/// The plain kernel: non-local means pixel by pixel, in the order and the precision that define the
/// result. The judge of every other kernel.
std::unique_ptr<FilterKernel> makeReferenceKernel(const FilterGeometry& geometry,
                                                  FilterBuffers& buffers);

/// The samples of the padded source by byte offset. Offsets outside the buffer read as 0: on very
/// narrow pictures the sheared rows of one-channel patches reach a little before the first byte.
class SourceSamples {
 public:
  /// Samples that outlive this.
  explicit SourceSamples(std::span<const std::uint8_t> bytes) : bytes_(bytes) {}

  /// The sample, 0 to 255, or 0 outside.
  int at(std::int64_t offset) const {
    const auto index = static_cast<std::uint64_t>(offset);  // Negative ones become too large.
    return index < bytes_.size() ? bytes_[index] : 0;
  }

 private:
  std::span<const std::uint8_t> bytes_;
};

/// The sum of squared differences of two t x t patches over all their samples, in 32-bit
/// arithmetic that wraps around. The offsets are those of the patches' top-left samples.
std::int32_t patchDistance(const SourceSamples& source, const FilterGeometry& geometry,
                           std::int64_t reference, std::int64_t candidate);

/// The index into the weight table of a patch distance: the distance times the reciprocal of the
/// patch area, truncated. (Not the quotient: for t = 7 and 14 the product of many a multiple of the
/// area falls just short of it.) 0 for a patch without area.
std::int32_t distanceIndex(std::int32_t distance, const FilterGeometry& geometry);

/// The low byte of a sum truncated toward zero to 32 bits; 0 for what has no such value.
std::uint8_t truncatedSample(double sum);

}  // namespace velmara
