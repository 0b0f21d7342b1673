#include "engine/peak_memory.h"

#include <fstream>
#include <malloc.h>
#include <string>

namespace velmara {
namespace {

// A line such as "VmHWM:   12345 kB" of the system's account of this process.
std::int64_t bytesOf(const std::string& name) {
  std::ifstream status("/proc/self/status");
  std::string word;
  while (status >> word) {
    std::int64_t kilobytes = 0;
    if (word == name && status >> kilobytes) return kilobytes * 1024;
  }
  return -1;
}

}  // namespace

PeakMemory::PeakMemory() {
  malloc_trim(0);
  std::ofstream("/proc/self/clear_refs") << "5";  // Sets the peak back to what there is now.
  start_ = bytesOf("VmRSS:");
}

std::int64_t PeakMemory::extraBytes() const {
  const std::int64_t peak = bytesOf("VmHWM:");
  return start_ < 0 || peak < 0 ? -1 : peak - start_;
}

}  // namespace velmara
