#include "engine/kernel_choice.h"

#include <cstdlib>
#include <new>
#include <string_view>

#include "engine/fast/fast_kernel.h"
#include "engine/filter_geometry.h"
#include "engine/reference_kernel.h"

namespace velmara {
namespace {

bool environmentAsksForReference() {
  static const bool asks = [] {
    const char* engine = std::getenv("VELMARA_ENGINE");
    return engine != nullptr && std::string_view(engine) == "reference";
  }();
  return asks;
}

}  // namespace

std::unique_ptr<FilterKernel> makeKernel(KernelChoice choice, const FilterGeometry& geometry,
                                         FilterBuffers& buffers) try {
  // Nothing is read for a picture without rows or of a kind that is not filtered: it has no source.
  const bool hasWork = geometry.heightSrc > 0 && isFilterable(geometry);
  if (hasWork && choice == KernelChoice::kFast && !environmentAsksForReference()) {
    if (auto kernel = makeFastKernel(geometry, buffers)) return kernel;
  }
  countReferencePixels(std::int64_t{geometry.widthSrc} * geometry.heightSrc);
  return makeReferenceKernel(geometry, buffers);
} catch (const std::bad_alloc&) {
  return nullptr;
}

}  // namespace velmara
