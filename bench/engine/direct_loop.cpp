#include "engine/direct_loop.h"

#include <cstdint>
#include <vector>

namespace velmara {
namespace {

template <int kChannels>
class DirectTileFilter final : public TileFilter {
 public:
  DirectTileFilter(const FilterGeometry& geometry, FilterBuffers& buffers)
      : g_(geometry),
        buffers_(buffers),
        distances_(static_cast<std::size_t>(geometry.D)),
        weights_(static_cast<std::size_t>(geometry.D)) {}

  void filter(const Tile& tile) override {
    for (int y = tile.yBegin; y < tile.yEnd; ++y) {
      for (int x = tile.xBegin; x < tile.xEnd; ++x) filterPixel(x, y);
    }
  }

 private:
  const std::uint8_t* source(int x, int y) const {
    return buffers_.sourceBytes.data() + y * g_.sourceStride() + std::int64_t{x} * kChannels;
  }

  void filterPixel(int x, int y) {
    const int s = g_.searchWinSize;
    const double* table = buffers_.weightTable.entries.data();
    const std::uint8_t* reference = source(x + g_.sr, y + g_.sr);
    double total = 0.0;
    auto slot = static_cast<std::size_t>(g_.D);
    for (int l = s - 1; l >= 0; --l) {
      for (int k = s - 1; k >= 0; --k) {
        const int distance =
            static_cast<int>(squaredDistance(reference, source(x + k, y + l)) * g_.tdiv);
        distances_[--slot] = distance;
        total += table[distance];
      }
    }
    if (total != 0.0) {
      const double reciprocal = 1.0 / total;
      for (std::size_t z = 0; z < weights_.size(); ++z) {
        weights_[z] = table[distances_[z]] * reciprocal;
      }
    } else {
      for (double& weight : weights_) weight = 0.0;
      weights_[static_cast<std::size_t>(g_.H)] = 1.0;
    }
    average(x, y);
  }

  int squaredDistance(const std::uint8_t* reference, const std::uint8_t* candidate) const {
    const int t = g_.templateWinSize;
    int sum = 0;
    for (int n = 0; n < t; ++n) {
      for (int m = 0; m < t * kChannels; ++m) {
        const int difference = candidate[m] - reference[m];
        sum += difference * difference;
      }
      reference += g_.patchRowStep();
      candidate += g_.patchRowStep();
    }
    return sum;
  }

  void average(int x, int y) {
    const int s = g_.searchWinSize;
    double sums[kChannels] = {};
    const double* weight = weights_.data();
    for (int l = 0; l < s; ++l) {
      const std::uint8_t* sample = source(x + g_.tr, y + g_.tr) + l * g_.averageRowStep();
      for (int k = 0; k < s; ++k, ++weight) {
        for (int c = 0; c < kChannels; ++c) sums[c] += *sample++ * *weight;
      }
    }
    std::uint8_t* out =
        buffers_.destBytes.data() + (std::int64_t{y} * g_.widthDest + x) * std::int64_t{kChannels};
    for (int c = 0; c < kChannels; ++c) {
      out[c] = static_cast<std::uint8_t>(static_cast<int>(sums[c]));
    }
  }

  const FilterGeometry& g_;
  FilterBuffers& buffers_;
  std::vector<std::int32_t> distances_;
  std::vector<double> weights_;
};

class DirectLoop final : public FilterKernel {
 public:
  DirectLoop(const FilterGeometry& geometry, FilterBuffers& buffers)
      : geometry_(geometry), buffers_(buffers) {}

  int tileWidth() const override { return 256; }
  int tileHeight() const override { return 4; }
  std::unique_ptr<TileFilter> makeTileFilter() const override {
    if (geometry_.channelsSrc == 1) {
      return std::make_unique<DirectTileFilter<1>>(geometry_, buffers_);
    }
    return std::make_unique<DirectTileFilter<3>>(geometry_, buffers_);
  }

 private:
  const FilterGeometry& geometry_;
  FilterBuffers& buffers_;
};

}  // namespace

std::unique_ptr<FilterKernel> makeDirectLoop(const FilterGeometry& geometry,
                                             FilterBuffers& buffers) {
  return std::make_unique<DirectLoop>(geometry, buffers);
}

}  // namespace velmara
