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
  /// How much memory it takes.
  static std::size_t bytesFor(const FastPlan& plan);

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
  /// Slot `slot` of the first shift's kept squared differences, and how far it is from there to
  /// those of another.
  template <class Distance>
  Distance* squares(std::int64_t slot) {
    return at<Distance>(squares_, static_cast<std::size_t>(slot), distanceColumns_);
  }
  template <class Distance>
  std::ptrdiff_t squaresOffset(std::size_t shift) {
    return squares<Distance>(static_cast<std::int64_t>(shift * squareRows_)) - squares<Distance>(0);
  }
  /// Sums of squared differences over the rows of patches.
  template <class Distance>
  Distance* columnSums() {
    return at<Distance>(columnSums_, 0, distanceColumns_);
  }
  /// Output samples of one row of the tile, interleaved.
  std::uint8_t* output() { return at<std::uint8_t>(output_, 0, 0); }
  /// Per vector of a row's pixels the undecided ones of them, one bit each.
  std::uint32_t* undecided() { return at<std::uint32_t>(undecided_, 0, 0); }
  /// Room for the numbers of as many pixels as a row has.
  std::int32_t* groups() { return at<std::int32_t>(groups_, 0, 0); }
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

  static constexpr int kMostLanes = 4;  ///< Pixels side by side in double precision.

 private:
  /// Lays out the sections; returns their size.
  std::size_t layOut(const FastPlan& plan);

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
  std::size_t columnSums_ = 0, output_ = 0, undecided_ = 0, groups_ = 0, exactWeights_ = 0;
  std::size_t ones_ = 0, zeros_ = 0;
  std::size_t weightPointers_ = 0, indexPointers_ = 0;
};

/// Writes the output pixels of a tile (at most plan.tileWidth wide) with the vectors of the chosen
/// instruction set. Returns how many pixels were undecided and averaged in double precision.
std::int64_t filterTile(const FastPlan& plan, FastScratch& scratch, const Tile& tile);

/// See largestWeightError; on the chosen instruction set.
double weightErrorOf(const WeightFunction& weight, const double* table, std::int64_t cutOff);

}  // namespace velmara
