#include "engine/noisy_photo.h"

#include <algorithm>
#include <cmath>
#include <random>
#include <utility>
#include <vector>

namespace velmara {
namespace {

// More noise than a row has samples, to be read from a place that differs from row to row: drawing
// each sample's noise by itself would take longer than filtering it.
std::vector<float> noiseTable(double deviation) {
  std::mt19937_64 random(7);
  std::normal_distribution<float> normal(0.0F, static_cast<float>(deviation));
  std::vector<float> table(std::size_t{1} << 20U);
  if (deviation > 0.0) std::ranges::generate(table, [&] { return normal(random); });
  return table;
}

}  // namespace

Bitmap noisyPhoto(int width, int height, int samples, PhotoKind kind) {
  auto builder = BitmapBuilder::allocate(width, height, samples);
  if (!builder) return {};
  if (kind.flat) {
    std::ranges::fill(builder->bytes(), std::uint8_t{93});
    return std::move(*builder).finish();
  }
  const std::vector<float> noise = noiseTable(kind.noise);
  std::mt19937_64 random(11);
  for (int y = 0; y < height; ++y) {
    std::size_t at = random() % noise.size();
    std::uint8_t* out = builder->row(y);
    const float down = 40.0F * std::cos(0.011F * static_cast<float>(y));
    for (int x = 0; x < width; ++x) {
      const float across = 50.0F * std::sin(0.007F * static_cast<float>(x));
      const float edge = (x + 2 * y) % 310 < 155 ? 18.0F : -18.0F;
      const bool textured = (x / 240 + y / 180) % 3 == 0;
      const float texture =
          textured ? 14.0F * std::sin(0.9F * static_cast<float>(x) + 0.6F * static_cast<float>(y))
                   : 0.0F;
      const float base =
          120.0F + across + down + edge + texture + static_cast<float>(kind.brightness);
      for (int c = 0; c < samples; ++c) {
        const float sample = base + static_cast<float>(9 * c) + noise[at];
        at = (at + 1) % noise.size();
        *out++ = static_cast<std::uint8_t>(std::clamp(sample, 0.0F, 255.0F));
      }
    }
  }
  return std::move(*builder).finish();
}

}  // namespace velmara
