// The fast kernel gives the bits of the readable reference, whoever computes them.
#include <gtest/gtest.h>

#include "engine/deep/deep_denoise.h"
#include "engine/deep/deep_pictures.h"
#include "engine/fast/instruction_sets.h"
#include "engine/pictures.h"
#include "engine/thread_queue.h"

namespace velmara {
namespace {

DeepNoise smoothNoise(float deviation) {
  DeepNoise noise = whiteNoise(deviation);
  noise.isWhite = false;
  noise.sizes = 3;
  noise.whenClipped = 0.0F;
  for (auto& plane : noise.amplitude) {
    for (std::size_t i = 0; i < plane.size(); ++i)
      plane[i] = 2.0F / (1.0F + 0.4F * static_cast<float>(i));
  }
  return noise;
}

std::vector<std::uint8_t> denoised(const Bitmap& bitmap, const DeepNoise& noise,
                                   const DeepRequest& request) {
  JobControl control;
  const auto result = denoiseDeeply(bitmap, noise, request, control);
  if (!result) return {};
  return {result->bytes().begin(), result->bytes().end()};
}

TEST(DeepKernel, GivesTheBitsOfTheReferenceOnEveryInstructionSet) {
  struct Case {
    int width, height, samples;
    DeepNoise noise;
    float strength;
  };
  const Case cases[] = {
      {1, 1, 3, whiteNoise(20.0F), 1.0F},   {9, 17, 4, whiteNoise(20.0F), 2.0F},
      {31, 64, 1, whiteNoise(60.0F), 1.0F}, {290, 45, 3, whiteNoise(25.0F), 1.0F},
      {533, 13, 2, whiteNoise(5.0F), 0.2F}, {130, 131, 3, smoothNoise(8.0F), 1.0F},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << c.width << " x " << c.height << " x " << c.samples);
    const Bitmap noisy = withWhiteNoise(scene(c.width, c.height, c.samples), 25.0);
    const auto wanted = denoised(noisy, c.noise, {c.strength, nullptr, 1, true});
    ASSERT_EQ(wanted.size(), noisy.byteCount());
    for (const std::string& name : instructionSets()) {
      ASSERT_TRUE(useInstructionSet(name));
      EXPECT_TRUE(denoised(noisy, c.noise, {c.strength, nullptr, 1, false}) == wanted) << name;
    }
    useInstructionSet("");
  }
}

TEST(DeepKernel, GivesTheBitsOfTheReferenceForContentsOfAllKinds) {
  const DeepNoise noise = whiteNoise(12.0F);
  for (const Content content : kAllContents) {
    // In the narrow ones blocks have no company to the right.
    for (const int width : {70, 20, 1}) {
      const Bitmap picture = makePicture(content, width, 50, 3, 5);
      EXPECT_TRUE(denoised(picture, noise, {1.0F, nullptr, 1, false}) ==
                  denoised(picture, noise, {1.0F, nullptr, 1, true}))
          << static_cast<int>(content) << ", " << width;
    }
  }
}

TEST(DeepKernel, GivesTheSameBitsOnAnyNumberOfThreads) {
  ThreadQueue workers(8);
  for (const DeepNoise& noise : {whiteNoise(25.0F), smoothNoise(8.0F)}) {
    const Bitmap noisy = withWhiteNoise(scene(210, 330), 25.0);
    const auto wanted = denoised(noisy, noise, {1.0F, nullptr, 1, false});
    for (const int threads : {2, 3, 8}) {
      EXPECT_TRUE(denoised(noisy, noise, {1.0F, &workers, threads, false}) == wanted) << threads;
    }
  }
}

TEST(DeepKernel, GivesAPartThePixelsOfTheWhole) {
  const Bitmap wide = withWhiteNoise(scene(1500, 133), 20.0);
  const Bitmap noisy = withWhiteNoise(scene(701, 590, 4), 20.0);
  struct Case {
    const Bitmap& picture;
    DeepNoise noise;
    PixelRect part;
  };
  for (const Case& c : {Case{wide, smoothNoise(8.0F), {733, 10, 41, 80}},
                        Case{wide, whiteNoise(20.0F), {1400, -5, 200, 50}},
                        Case{noisy, whiteNoise(20.0F), {233, 307, 1, 1}},
                        Case{noisy, smoothNoise(8.0F), {297, 303, 90, 75}},
                        Case{noisy, smoothNoise(8.0F), {0, 555, 701, 35}},
                        Case{noisy, DeepNoise(), {7, 8, 9, 10}}}) {
    SCOPED_TRACE(testing::PrintToString(c.part.x) + " of " +
                 testing::PrintToString(c.picture.width()));
    const auto whole = denoised(c.picture, c.noise, {});
    const auto part = denoised(c.picture, c.noise, {.part = c.part});
    const PixelRect inside = intersection(c.part, {0, 0, c.picture.width(), c.picture.height()});
    const auto bytes = static_cast<std::ptrdiff_t>(inside.width) * c.picture.samplesPerPixel();
    ASSERT_EQ(std::ssize(part), bytes * inside.height);
    for (int y = 0; y < inside.height; ++y) {
      const auto* wanted =
          whole.data() + (c.picture.pixel(inside.x, inside.y + y) - c.picture.row(0));
      ASSERT_TRUE(std::equal(wanted, wanted + bytes, part.data() + y * bytes)) << "row " << y;
    }
  }
}

}  // namespace
}  // namespace velmara
