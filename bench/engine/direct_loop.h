#pragma once

#include <memory>

#include "engine/filter_kernel.h"

namespace velmara {

/// Non-local means as one would write it down: for each pixel a loop over candidates, patch rows
/// and samples, a table look-up, and a second loop for the average, with plain pointers and no
/// check of any kind. Compiled with everything the compiler knows of this machine. What the kernels
/// are measured against; it gives their bits.
std::unique_ptr<FilterKernel> makeDirectLoop(const FilterGeometry& geometry,
                                             FilterBuffers& buffers);

}  // namespace velmara
