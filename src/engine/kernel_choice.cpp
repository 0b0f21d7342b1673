#include "engine/kernel_choice.h"

#include <new>

#include "engine/reference_kernel.h"

namespace velmara {

std::unique_ptr<FilterKernel> makeKernel(KernelChoice /*choice*/, const FilterGeometry& geometry,
                                         FilterBuffers& buffers) try {
  return makeReferenceKernel(geometry, buffers);
} catch (const std::bad_alloc&) {
  return nullptr;
}

}  // namespace velmara
