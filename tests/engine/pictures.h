#pragma once

#include <cstdint>
#include <vector>

#include "base/bitmap.h"

namespace velmara {

using Bytes = std::vector<std::uint8_t>;

/// Kinds of content that make filters behave differently.
enum class Content { kFlat, kRandom, kPhoto, kSaturated, kCheckerboard };
inline constexpr Content kAllContents[] = {Content::kFlat, Content::kRandom, Content::kPhoto,
                                           Content::kSaturated, Content::kCheckerboard};

/// A picture of some content, the same for the same seed.
Bitmap makePicture(Content content, int width, int height, int samples, std::uint64_t seed);

Bytes bytesOf(const Bitmap& bitmap);

}  // namespace velmara
