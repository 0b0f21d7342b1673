#include "engine/reference_kernel.h"

#include <algorithm>

namespace velmara {
namespace {

// Compares the patch of pixel (x, y) with those of its D candidates: ww[l * s + k] becomes the
// distance index of the candidate k columns and l rows into the search window. Returns the sum of
// their weights, added from the last candidate to the first.
double compareCandidates(const SourceSamples& source, const FilterGeometry& geometry,
                         std::span<const double> weightTable, int x, int y,
                         std::span<std::int32_t> ww) {
  const std::int64_t stride = geometry.sourceStride();
  const std::int64_t channels = geometry.channelsIm;
  const auto offsetOf = [&](std::int64_t column, std::int64_t row) {
    return row * stride + column * channels;
  };
  const int s = geometry.searchWinSize;
  const std::int64_t reference =
      offsetOf(std::int64_t{x} + geometry.sr, std::int64_t{y} + geometry.sr);
  double tweight = 0.0;
  std::size_t slot = ww.size();
  for (int l = s - 1; l >= 0; --l) {
    for (int k = s - 1; k >= 0; --k) {
      const std::int64_t candidate = offsetOf(std::int64_t{x} + k, std::int64_t{y} + l);
      const std::int32_t d =
          distanceIndex(patchDistance(source, geometry, reference, candidate), geometry);
      ww[--slot] = d;
      tweight += weightOf(weightTable, d);
    }
  }
  return tweight;
}

// The normalised weight nw of each candidate. If all weights are zero the candidate H alone
// counts: one slot past the centre, so the pixel takes the value of its right-hand neighbour.
void normaliseWeights(std::span<const double> weightTable, std::span<const std::int32_t> ww,
                      double tweight, std::int64_t H, std::span<double> nw) {
  if (tweight == 0.0) {
    std::fill(nw.begin(), nw.end(), 0.0);
    const auto fallback = static_cast<std::uint64_t>(H);
    if (fallback < nw.size()) nw[fallback] = 1.0;
    return;
  }
  const double reciprocal = 1.0 / tweight;
  for (std::size_t z = 0; z < ww.size(); ++z) nw[z] = weightOf(weightTable, ww[z]) * reciprocal;
}

// Writes pixel (x, y): for each of its samples the sum of the candidates' samples times their
// normalised weights, added from the first candidate to the last and truncated, never rounded.
void averageCandidates(const SourceSamples& source, const FilterGeometry& geometry,
                       std::span<const double> nw, int x, int y, std::uint8_t* pixel) {
  const std::int64_t channels = geometry.channelsIm == 1 ? 1 : 3;
  const int s = geometry.searchWinSize;
  std::int64_t row = (std::int64_t{y} + geometry.tr) * geometry.sourceStride() +
                     (std::int64_t{x} + geometry.tr) * channels;
  double sums[3] = {0.0, 0.0, 0.0};
  std::size_t slot = 0;
  for (int l = 0; l < s; ++l) {
    for (int k = 0; k < s; ++k, ++slot) {
      for (std::int64_t c = 0; c < channels; ++c) {
        sums[c] += static_cast<double>(source.at(row + k * channels + c)) * nw[slot];
      }
    }
    row += geometry.averageRowStep();
  }
  for (std::int64_t c = 0; c < channels; ++c) pixel[c] = truncatedSample(sums[c]);
}

class ReferenceTileFilter final : public TileFilter {
 public:
  ReferenceTileFilter(const FilterGeometry& geometry, FilterBuffers& buffers)
      : geometry_(geometry),
        buffers_(buffers),
        source_(buffers.sourceBytes),
        ww_(static_cast<std::size_t>(geometry.D)),
        nw_(static_cast<std::size_t>(geometry.D)) {}

  void filter(const Tile& tile) override {
    const std::span<const double> table = buffers_.weightTable.entries;
    for (int y = tile.yBegin; y < tile.yEnd; ++y) {
      for (int x = tile.xBegin; x < tile.xEnd; ++x) {
        if (buffers_.isCancelled()) return;  // A pixel of large windows takes milliseconds.
        const double tweight = compareCandidates(source_, geometry_, table, x, y, ww_);
        normaliseWeights(table, ww_, tweight, geometry_.H, nw_);
        averageCandidates(source_, geometry_, nw_, x, y, pixelOf(x, y));
      }
    }
  }

 private:
  std::uint8_t* pixelOf(int x, int y) const {
    const std::int64_t stride = std::int64_t{geometry_.channelsDest} * geometry_.widthDest;
    return buffers_.destBytes.data() + y * stride + std::int64_t{x} * geometry_.channelsDest;
  }

  const FilterGeometry& geometry_;
  FilterBuffers& buffers_;
  SourceSamples source_;
  std::vector<std::int32_t> ww_;
  std::vector<double> nw_;
};

class ReferenceKernel final : public FilterKernel {
 public:
  ReferenceKernel(const FilterGeometry& geometry, FilterBuffers& buffers)
      : geometry_(geometry), buffers_(buffers) {}

  int tileWidth() const override { return 256; }
  int tileHeight() const override { return 4; }
  std::unique_ptr<TileFilter> makeTileFilter() const override try {
    return std::make_unique<ReferenceTileFilter>(geometry_, buffers_);
  } catch (const std::exception&) {  // Not enough memory, or more entries than a vector can hold.
    return nullptr;
  }

 private:
  const FilterGeometry& geometry_;
  FilterBuffers& buffers_;
};

}  // namespace

std::int32_t patchDistance(const SourceSamples& source, const FilterGeometry& geometry,
                           std::int64_t reference, std::int64_t candidate) {
  const std::int64_t rowSamples = std::int64_t{geometry.templateWinSize} * geometry.channelsSrc;
  std::uint32_t sum = 0;
  for (int row = 0; row < geometry.templateWinSize; ++row) {
    for (std::int64_t i = 0; i < rowSamples; ++i) {
      const int difference = source.at(candidate + i) - source.at(reference + i);
      sum += static_cast<std::uint32_t>(difference * difference);
    }
    reference += geometry.patchRowStep();
    candidate += geometry.patchRowStep();
  }
  return static_cast<std::int32_t>(sum);
}

std::int32_t distanceIndex(std::int32_t distance, const FilterGeometry& geometry) {
  if (geometry.templateWinSize == 0) return 0;
  return static_cast<std::int32_t>(static_cast<double>(distance) * geometry.tdiv);
}

std::uint8_t truncatedSample(double sum) {
  const bool fits = sum > -2147483649.0 && sum < 2147483648.0;  // Not so for a NaN either.
  return fits ? static_cast<std::uint8_t>(static_cast<std::int32_t>(sum)) : std::uint8_t{0};
}

std::unique_ptr<FilterKernel> makeReferenceKernel(const FilterGeometry& geometry,
                                                  FilterBuffers& buffers) {
  return std::make_unique<ReferenceKernel>(geometry, buffers);
}

}  // namespace velmara
