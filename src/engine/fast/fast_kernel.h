#pragma once

#include <cstdint>
#include <memory>

#include "engine/filter_kernel.h"

namespace velmara {

/// The kernel for a request, the reference where the fast one does not take it. Null if the memory
/// is not to be had.
std::unique_ptr<FilterKernel> makeKernel(KernelChoice choice, const FilterGeometry& geometry,
                                         FilterBuffers& buffers);

/// The kernel that uses the machine's vector instructions: the reference's bits in a fraction of
/// its time.
///
/// It adds up exact integer patch distances, takes weights and averages in single precision with a
/// proven bound (decisionBound), and averages again in the defining precision and order only
/// what the bound leaves undecided. It takes search windows of 1 to 64 and templates up to 31, one
/// and three channels, and weight tables as buildWeightTable makes them. For anything else it gives
/// null, and the reference has to do. Throws std::bad_alloc.
std::unique_ptr<FilterKernel> makeFastKernel(const FilterGeometry& geometry,
                                             FilterBuffers& buffers);

/// As makeFastKernel, but with nothing decided in single precision: for tests of the other path.
std::unique_ptr<FilterKernel> makeUndecidedKernel(const FilterGeometry& geometry,
                                                  FilterBuffers& buffers);

/// Pixels filtered by this process so far.
struct KernelStatistics {
  std::int64_t fastPixels = 0;       ///< By the fast kernel.
  std::int64_t undecidedPixels = 0;  ///< Of the fast ones those averaged in double precision.
  std::int64_t referencePixels = 0;  ///< By the reference.
};
/// The counts as they stand. Any thread.
KernelStatistics kernelStatistics();

}  // namespace velmara
