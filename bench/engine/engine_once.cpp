// engine_once KERNEL TEMPLATE SEARCH SIGMA CHANNELS: filters a generated photo once with the kernel
// `fast` or `reference` and prints how many pixels it has, for tools that count what a run does.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "engine/fast/fast_kernel.h"
#include "engine/filter_run.h"
#include "engine/reference_kernel.h"

// The vector library times itself as it is loaded, by an instruction that valgrind claims to have
// wherever it claims AVX2, whatever the processor has.
namespace hwy::platform {
std::uint64_t TimerResolution() {
  return 1;
}
}  // namespace hwy::platform

int main(int argc, char** argv) {
  if (argc != 6) {
    std::fputs("engine_once fast|reference TEMPLATE SEARCH SIGMA CHANNELS\n", stderr);
    return 2;
  }
  constexpr int kWidth = 1000, kHeight = 750;
  const velmara::FilterCase filterCase{
      "", std::atoi(argv[2]), std::atoi(argv[3]), std::atof(argv[4]), std::atoi(argv[5]), {}};
  velmara::FilterRun run(filterCase, kWidth, kHeight);
  run.filter(std::string(argv[1]) == "fast" ? velmara::makeFastKernel
                                            : velmara::makeReferenceKernel);
  std::printf("%d\n", kWidth * kHeight);
  return 0;
}
