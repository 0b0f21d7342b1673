#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>

#include "engine/fast/fast_plan.h"

namespace velmara {

/// What one thread of the fast kernel works in; zero to begin with. Rows start at multiples of 64
/// bytes, and vector code may go kRowSlack elements beyond their ends.
class FastScratch {
 public:
  /// Null if the memory is not to be had.
  static std::unique_ptr<FastScratch> allocate(const FastPlan& plan);

  /// Row `row` (of the padded source, the last plan.sourceRows of them are kept) of one channel:
  /// the samples, and the samples less 128 in single precision.
  std::int16_t* samples(std::int64_t row, int channel) {
    return at<std::int16_t>(samples_, sourceSlot(row, channel), sourceColumns_);
  }
  float* centred(std::int64_t row, int channel) {
    return at<float>(centred_, sourceSlot(row, channel), sourceColumns_);
  }
  /// A row of weights and one of distance indices, 16 or 32 bits wide.
  float* weights(std::size_t row) { return at<float>(weights_, row, distanceColumns_); }
  template <class Index>
  Index* indices(std::size_t row) {
    return at<Index>(indices_, row, distanceColumns_);
  }
  /// Row `row` of a shift's kept squared differences.
  template <class Distance>
  Distance* squares(std::size_t shift, std::int64_t row) {
    const auto slot = shift * squareRows_ + static_cast<std::size_t>(row) % squareRows_;
    return at<Distance>(squares_, slot, distanceColumns_);
  }
  /// Sums of squared differences over the rows of patches.
  template <class Distance>
  Distance* columnSums() {
    return at<Distance>(columnSums_, 0, distanceColumns_);
  }
  /// Output samples of one channel and row, before they are interleaved.
  std::uint8_t* output(int channel) {
    return at<std::uint8_t>(output_, static_cast<std::size_t>(channel), distanceColumns_);
  }
  /// Room for the weights of D candidates in double precision, `lanes` pixels side by side.
  double* exactWeights() { return at<double>(exactWeights_, 0, 0); }
  /// Weights and indices of a pixel compared with itself.
  const float* ones() { return at<float>(ones_, 0, 0); }
  template <class Index>
  const Index* zeros() {
    return at<Index>(zeros_, 0, 0);
  }
  /// Per candidate the start of its row of weights, and of indices.
  const float** weightPointers() { return at<const float*>(weightPointers_, 0, 0); }
  template <class Index>
  const Index** indexPointers() {
    return at<const Index*>(indexPointers_, 0, 0);
  }

  static constexpr int kMostLanes = 8;  ///< Pixels side by side in double precision.

 private:
  struct Free {
    void operator()(void* memory) const { std::free(memory); }
  };

  std::size_t sourceSlot(std::int64_t row, int channel) const {
    return static_cast<std::size_t>(row % sourceRows_) * channels_ +
           static_cast<std::size_t>(channel);
  }
  template <class T>
  T* at(std::size_t section, std::size_t row, std::size_t columns) {
    const std::size_t rowBytes = (columns * sizeof(T) + 63) / 64 * 64;
    return reinterpret_cast<T*>(memory_.get() + section + row * rowBytes);
  }

  std::unique_ptr<std::uint8_t, Free> memory_;
  std::size_t sourceColumns_ = 0, distanceColumns_ = 0;
  std::int64_t sourceRows_ = 1;
  std::size_t channels_ = 0, squareRows_ = 1;
  std::size_t samples_ = 0, centred_ = 0, weights_ = 0, indices_ = 0, squares_ = 0;
  std::size_t columnSums_ = 0, output_ = 0, exactWeights_ = 0, ones_ = 0, zeros_ = 0;
  std::size_t weightPointers_ = 0, indexPointers_ = 0;
};

}  // namespace velmara
