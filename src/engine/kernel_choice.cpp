#include "engine/kernel_choice.h"

#include <cstdlib>
#include <new>
#include <string_view>

#include "engine/fast/fast_kernel.h"
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
  if (choice == KernelChoice::kFast && !environmentAsksForReference()) {
    if (auto kernel = makeFastKernel(geometry, buffers)) return kernel;
  }
  countReferencePixels(std::int64_t{geometry.widthSrc} * geometry.heightSrc);
  return makeReferenceKernel(geometry, buffers);
} catch (const std::bad_alloc&) {
  return nullptr;
}

}  // namespace velmara
