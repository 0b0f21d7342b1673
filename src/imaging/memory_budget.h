#pragma once

#include <cstdint>

namespace velmara {

/// Whether the machine can hand out this many bytes now without running out: what the system calls
/// available, swap included. True where the system does not say.
bool fitsInMemory(std::uint64_t bytes);

}  // namespace velmara
