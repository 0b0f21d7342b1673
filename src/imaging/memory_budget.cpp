#include "imaging/memory_budget.h"

#include <fstream>
#include <optional>
#include <string>
#include <unistd.h>

namespace velmara {
namespace {

// "MemAvailable" and "SwapFree" of /proc/meminfo, in bytes.
std::optional<std::uint64_t> availableBytes() {
  std::ifstream file("/proc/meminfo");
  std::uint64_t available = 0;
  std::string name;
  std::uint64_t kilobytes = 0;
  std::string unit;
  while (file >> name >> kilobytes && std::getline(file, unit)) {
    if (name == "MemAvailable:" || name == "SwapFree:") available += kilobytes * 1024U;
  }
  if (available != 0) return available;
  const long pages = ::sysconf(_SC_PHYS_PAGES);
  const long pageBytes = ::sysconf(_SC_PAGESIZE);
  if (pages <= 0 || pageBytes <= 0) return std::nullopt;
  return static_cast<std::uint64_t>(pages) * static_cast<std::uint64_t>(pageBytes);
}

}  // namespace

bool fitsInMemory(std::uint64_t bytes) {
  const std::optional<std::uint64_t> available = availableBytes();
  return !available || bytes <= *available;
}

}  // namespace velmara
