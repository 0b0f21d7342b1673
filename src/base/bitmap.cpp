#include "base/bitmap.h"

#include <algorithm>
#include <cstdlib>
#include <new>
#include <sys/mman.h>
#include <utility>

namespace velmara {
namespace {

// Room for samples that are not set. Large pictures get large pages where the system gives them on
// demand: their memory is touched for the first time soon, and with small pages that takes longer
// than filling it. Throws std::bad_alloc.
std::shared_ptr<std::uint8_t[]> samplesFor(std::size_t count) {
  constexpr std::size_t kLargePage = std::size_t{2} << 20U;
  if (count < kLargePage) return std::make_shared_for_overwrite<std::uint8_t[]>(count);
  const std::size_t bytes = (count + kLargePage - 1) / kLargePage * kLargePage;
  auto* samples = static_cast<std::uint8_t*>(std::aligned_alloc(kLargePage, bytes));
  if (samples == nullptr) throw std::bad_alloc();
  ::madvise(samples, bytes, MADV_HUGEPAGE);  // A wish: it does not matter if it is not granted.
  return {samples, [](std::uint8_t* memory) { std::free(memory); }};
}

}  // namespace

Bitmap Bitmap::copyOf(std::span<const std::uint8_t> bytes, int width, int height,
                      int samplesPerPixel) {
  auto builder = BitmapBuilder::allocate(width, height, samplesPerPixel);
  if (!builder || builder->bytes().size() != bytes.size()) return {};
  std::copy(bytes.begin(), bytes.end(), builder->bytes().begin());
  return std::move(*builder).finish();
}

bool isAllowedBitmapSize(std::int64_t width, std::int64_t height, int samplesPerPixel) {
  return width > 0 && height > 0 && samplesPerPixel >= 1 && samplesPerPixel <= 4 &&
         width <= Bitmap::kMaxPixels / height;
}

std::optional<BitmapBuilder> BitmapBuilder::allocate(std::int64_t width, std::int64_t height,
                                                     int samplesPerPixel) {
  if (!isAllowedBitmapSize(width, height, samplesPerPixel)) return std::nullopt;
  const auto count = static_cast<std::size_t>(width) * static_cast<std::size_t>(height) *
                     static_cast<std::size_t>(samplesPerPixel);
  try {
    auto samples = samplesFor(count);
    std::uint8_t* const first = samples.get();
    return BitmapBuilder(
        {std::move(samples), static_cast<int>(width), static_cast<int>(height), samplesPerPixel},
        first);
  } catch (const std::bad_alloc&) {
    return std::nullopt;
  }
}

bool isOpaque(const Bitmap& bitmap) {
  if (!bitmap.hasAlpha()) return true;
  const auto step = static_cast<std::size_t>(bitmap.samplesPerPixel());
  const auto bytes = bitmap.bytes();
  for (std::size_t i = step - 1; i < bytes.size(); i += step) {
    if (bytes[i] != 255) return false;
  }
  return true;
}

}  // namespace velmara
