#pragma once

#include <cstddef>
#include <cstdint>

namespace velmara {

/// Draws pixels of 4 samples over black (overBlack) into pixels of 3, which must not overlap them.
void dropAlpha(const std::uint8_t* rgba, std::size_t pixels, std::uint8_t* rgb);

/// Makes opaque pixels of 4 samples from pixels of 3. They may be the same memory if the 3-sample
/// pixels end where the 4-sample ones do.
void addAlpha(const std::uint8_t* rgb, std::size_t pixels, std::uint8_t* rgba);

}  // namespace velmara
