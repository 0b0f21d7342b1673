#pragma once

#include <cstdint>
#include <span>

namespace velmara {

/// The samples of the padded source by byte offset. Offsets outside the buffer read as 0: on very
/// narrow pictures the sheared rows of one-channel patches reach a little before the first byte.
class SourceSamples {
 public:
  explicit SourceSamples(std::span<const std::uint8_t> bytes) : bytes_(bytes) {}

  int at(std::int64_t offset) const {
    const auto index = static_cast<std::uint64_t>(offset);  // Negative ones become too large.
    return index < bytes_.size() ? bytes_[index] : 0;
  }

 private:
  std::span<const std::uint8_t> bytes_;
};

}  // namespace velmara
