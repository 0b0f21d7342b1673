#pragma once

#include <memory>

#include "engine/filter_kernel.h"

namespace velmara {

/// The plain kernel: non-local means pixel by pixel, in the order and the precision that define the
/// result. The judge of every other kernel.
std::unique_ptr<FilterKernel> makeReferenceKernel(const FilterGeometry& geometry,
                                                  FilterBuffers& buffers);

}  // namespace velmara
