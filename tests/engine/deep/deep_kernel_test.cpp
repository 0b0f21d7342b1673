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
  for (const Content content : kAllContents) {
    const Bitmap picture = makePicture(content, 70, 50, 3, 5);
    const DeepNoise noise = whiteNoise(12.0F);
    EXPECT_TRUE(denoised(picture, noise, {1.0F, nullptr, 1, false}) ==
                denoised(picture, noise, {1.0F, nullptr, 1, true}))
        << static_cast<int>(content);
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
  struct Case {
    int width, height, margin;
    DeepNoise noise;
  };
  for (const Case& c :
       {Case{400, 60, 96, whiteNoise(20.0F)}, {1500, 132, 640, smoothNoise(8.0F)}}) {
    const Bitmap noisy = withWhiteNoise(scene(c.width, c.height), 20.0);
    constexpr int kX = 64;
    const int width = c.width - kX - 36;
    std::vector<std::uint8_t> cut;
    for (int y = 0; y < c.height; ++y) {
      cut.insert(cut.end(), noisy.pixel(kX, y), noisy.pixel(kX, y) + std::ptrdiff_t{3} * width);
    }
    const auto whole = denoised(noisy, c.noise, {});
    const auto part = denoised(Bitmap::copyOf(cut, width, c.height, 3), c.noise, {});
    for (int y = 0; y < c.height; ++y) {
      const auto* a = part.data() + std::ptrdiff_t{3} * (y * width + c.margin);
      const auto* b = whole.data() + std::ptrdiff_t{3} * (y * c.width + c.margin + kX);
      ASSERT_TRUE(std::equal(a, a + std::ptrdiff_t{3} * (width - 2 * c.margin), b)) << "row " << y;
    }
  }
}

}  // namespace
}  // namespace velmara
