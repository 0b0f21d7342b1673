#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <span>

#include "base/job_control.h"
#include "engine/filter_terms.h"

namespace velmara {

/// Which filter kernel works: both give the same bits.
enum class KernelChoice { kFast, kReference };

/// The buffers of one request, named as the method has them. They belong to their request: two
/// requests at a time do not meet.
struct FilterBuffers {
  /// The padded picture: interleaved 8-bit samples, rows of channelsIm * widthIm bytes.
  std::span<const std::uint8_t> sourceBytes;
  /// The output: rows of channelsDest * widthDest bytes.
  std::span<std::uint8_t> destBytes;
  /// What a distance is worth.
  WeightTable weightTable;
  /// Bands that are done.
  std::atomic<std::int32_t> completedSlices{0};
  /// Asked between rows whether to stop.
  const JobControl* control = nullptr;

  /// Whether whoever waits for the request has asked to stop.
  bool isCancelled() const { return control != nullptr && control->isCancelled(); }
};

/// A rectangle of output pixels, up to but not including xEnd and yEnd.
struct Tile {
  /// In pixels of the output.
  int xBegin = 0, xEnd = 0;
  int yBegin = 0, yEnd = 0;

  /// How many pixels it has.
  std::int64_t pixels() const { return std::int64_t{xEnd - xBegin} * (yEnd - yBegin); }
};

/// One thread's part of a kernel, with the scratch memory it works in.
class TileFilter {
 public:
  virtual ~TileFilter() = default;
  /// Writes the output pixels of a tile, or some of them if the request is cancelled meanwhile.
  virtual void filter(const Tile& tile) = 0;
};

/// A filter kernel set up for one request. The geometry is filterable (isFilterable) and the
/// buffers are of its sizes; both outlive the kernel. Any number of its tile filters may work at
/// the same time on different tiles.
class FilterKernel {
 public:
  virtual ~FilterKernel() = default;
  /// How wide and how tall a tile is that suits the kernel; some are smaller (TileQueue).
  virtual int tileWidth() const = 0;
  virtual int tileHeight() const = 0;
  /// How many tile filters there may be at a time, which keeps a request's memory within bounds.
  virtual int mostTileFilters() const { return 64; }
  /// Null if the memory is not to be had.
  virtual std::unique_ptr<TileFilter> makeTileFilter() const = 0;
};

}  // namespace velmara
