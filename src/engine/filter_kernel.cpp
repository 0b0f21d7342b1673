#include "engine/filter_kernel.h"

#include <new>

#include "engine/fast/fast_kernel.h"
#include "engine/reference_kernel.h"

namespace velmara {

std::unique_ptr<FilterKernel> makeKernel(KernelChoice choice, const FilterGeometry& geometry,
                                         FilterBuffers& buffers) try {
  // Nothing is read for a picture without rows or of a kind that is not filtered: it has no source.
  const bool hasWork = geometry.heightSrc > 0 && isFilterable(geometry);
  if (hasWork && choice == KernelChoice::kFast) {
    if (auto kernel = makeFastKernel(geometry, buffers)) return kernel;
  }
  countReferencePixels(std::int64_t{geometry.widthSrc} * geometry.heightSrc);
  return makeReferenceKernel(geometry, buffers);
} catch (const std::bad_alloc&) {
  return nullptr;
}

}  // namespace velmara
