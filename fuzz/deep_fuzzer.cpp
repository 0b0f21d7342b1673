// The method for strong noise on small pictures of any content: its fast kernel gives the
// reference's bits, and a part of a picture is the part of the whole.
#include <algorithm>
#include <fuzzer/FuzzedDataProvider.h>
#include <vector>

#include "engine/deep/deep_denoise.h"
#include "fuzzing.h"

namespace {

using namespace velmara;
using fuzzing::require;

DeepNoise noiseOf(FuzzedDataProvider& data, const Bitmap& picture) {
  DeepNoise noise = data.ConsumeBool()
                        ? measureNoise(picture)
                        : whiteNoise(static_cast<float>(data.ConsumeIntegralInRange(0, 120)));
  if (data.ConsumeBool()) {
    noise.isWhite = false;
    noise.sizes = data.ConsumeIntegralInRange(1, 3);
  }
  return noise;
}

Bitmap cut(const Bitmap& picture, const PixelRect& part) {
  std::vector<std::uint8_t> bytes;
  for (int y = part.y; y < part.y + part.height; ++y) {
    const std::uint8_t* row = picture.pixel(part.x, y);
    bytes.insert(bytes.end(), row, row + part.width * picture.samplesPerPixel());
  }
  return Bitmap::copyOf(bytes, part.width, part.height, picture.samplesPerPixel());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* input, std::size_t size) {
  FuzzedDataProvider data(input, size);
  const int width = data.ConsumeIntegralInRange(1, 40);
  const int height = data.ConsumeIntegralInRange(1, 24);
  const int samples = data.ConsumeIntegralInRange(1, 4);
  const float strength = data.ConsumeFloatingPointInRange(0.0F, 4.0F);
  const int x = data.ConsumeIntegralInRange(0, width - 1);
  const int y = data.ConsumeIntegralInRange(0, height - 1);
  const PixelRect part{x, y, data.ConsumeIntegralInRange(1, width - x),
                       data.ConsumeIntegralInRange(1, height - y)};
  const bool wantsCameraNoise = data.ConsumeBool();
  std::vector<std::uint8_t> bytes(static_cast<std::size_t>(width * height * samples));
  const auto given = data.ConsumeBytes<std::uint8_t>(bytes.size());
  std::ranges::copy(given, bytes.begin());
  const auto count = std::max<std::size_t>(given.size(), 1);
  for (std::size_t i = count; i < bytes.size(); ++i) bytes[i] = bytes[i - count];
  const Bitmap picture = Bitmap::copyOf(bytes, width, height, samples);
  const DeepNoise noise = wantsCameraNoise ? noiseOf(data, picture) : whiteNoise(25.0F);

  JobControl control;
  const auto fast = denoiseDeeply(picture, noise, {.strength = strength}, control);
  const auto plain =
      denoiseDeeply(picture, noise, {.strength = strength, .plainly = true}, control);
  require(fast && plain, "a picture has a result");
  require(fast->width() == width && fast->height() == height && fast->samplesPerPixel() == samples,
          "the result is as large as the picture");
  require(std::ranges::equal(fast->bytes(), plain->bytes()),
          "the fast kernel gives the bits of the reference");
  const auto piece = denoiseDeeply(picture, noise, {.strength = strength, .part = part}, control);
  require(piece && std::ranges::equal(piece->bytes(), cut(*fast, part).bytes()),
          "a part is the part of the whole");
  return 0;
}
