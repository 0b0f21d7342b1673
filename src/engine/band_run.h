#pragma once

#include "engine/engine_environment.h"
#include "engine/filter_kernel.h"

namespace velmara {

/// The number of row bands of a parallel request, whatever the number of processors.
inline constexpr int kBands = 8;

/// Filters one band on the calling thread and counts it in completedSlices, empty or not. False if
/// the memory to work in is not to be had or the buffers' control is cancelled.
bool runOneBand(const FilterKernel& kernel, FilterBuffers& buffers, const FilterGeometry& geometry,
                RowRange rows);

/// Filters the whole picture in eight bands on the environment's workers and the calling thread,
/// which then waits for the end, with no time-out. All of them take small tiles from the top to the
/// bottom (TileQueue), so the time is that of an even split even if one processor is slow, and the
/// run ends even if no worker is free. A band counts in completedSlices once, when all its rows are
/// done; each time one does, the main queue is asked to check whether all eight are. Must not be
/// called on the main queue's own thread. The watch's awaitRows is asked for the source of each
/// tile. False if the memory to work in or the source is not to be had or the buffers' control is
/// cancelled.
bool runBands(const EngineEnvironment& environment, const FilterKernel& kernel,
              FilterBuffers& buffers, const FilterGeometry& geometry, const RunWatch& watch = {});

}  // namespace velmara
