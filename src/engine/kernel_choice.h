#pragma once

#include <memory>

#include "engine/engine_environment.h"
#include "engine/filter_kernel.h"

namespace velmara {

/// The kernel for a request: the one asked for, or the reference if the environment variable
/// VELMARA_ENGINE says "reference". Null if the memory is not to be had.
std::unique_ptr<FilterKernel> makeKernel(KernelChoice choice, const FilterGeometry& geometry,
                                         FilterBuffers& buffers);

}  // namespace velmara
