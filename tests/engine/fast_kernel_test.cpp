#include "engine/fast/fast_kernel.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <random>

#include "engine/fast/fast_plan.h"
#include "engine/fast/instruction_sets.h"
#include "engine/random_request.h"
#include "engine/reference_kernel.h"

namespace velmara {
namespace {

// Random requests a test compares; VELMARA_RANDOM_REQUESTS asks for more, VELMARA_RANDOM_SEED for
// other ones.
std::uint64_t fromEnvironment(const char* name, std::uint64_t otherwise) {
  const char* text = std::getenv(name);
  return text == nullptr ? otherwise : std::strtoull(text, nullptr, 10);
}

class FastKernelTest : public ::testing::TestWithParam<std::string> {
 protected:
  void SetUp() override { ASSERT_TRUE(useInstructionSet(GetParam())); }
  void TearDown() override { useInstructionSet(""); }
};

// Whether the fast kernel takes a request at all.
bool isTaken(const KernelRequest& request) {
  return request.s >= 1;
}

void expectReferenceBits(const KernelRequest& request, bool undecided = false) {
  KernelBuffers buffers(request);
  const auto kernel = undecided ? makeUndecidedKernel(buffers.geometry(), buffers.buffers())
                                : makeFastKernel(buffers.geometry(), buffers.buffers());
  ASSERT_EQ(kernel != nullptr, isTaken(request)) << request.text();
  if (kernel == nullptr) return;
  const Bytes fast = buffers.run(*kernel);
  const Bytes reference = buffers.run(*makeReferenceKernel(buffers.geometry(), buffers.buffers()));
  if (fast == reference) return;
  const auto difference = std::ranges::mismatch(fast, reference);
  ADD_FAILURE() << request.text() << ": byte " << difference.in1 - fast.begin() << " of "
                << fast.size();
}

TEST_P(FastKernelTest, RandomRequestsGiveTheReferenceBits) {
  std::mt19937_64 random(fromEnvironment("VELMARA_RANDOM_SEED", 2005));
  const std::uint64_t count = fromEnvironment("VELMARA_RANDOM_REQUESTS", 2000);
  for (std::uint64_t i = 0; i < count && !HasFailure(); ++i) {
    expectReferenceBits(randomRequest(random));
  }
}

TEST_P(FastKernelTest, UndecidedPixelsGiveTheReferenceBits) {
  std::mt19937_64 random(fromEnvironment("VELMARA_RANDOM_SEED", 2011));
  for (int i = 0; i < 300 && !HasFailure(); ++i) expectReferenceBits(randomRequest(random), true);
}

TEST_P(FastKernelTest, EveryWindowAndStrength) {
  // With the last the first weight below 1 is hardly below it.
  constexpr double kSigmas[] = {0, 1, 2, 5, 12, 40, 200, -3, 7.07106781};
  std::uint64_t seed = 1;
  for (int s = 1; s <= 64; ++s) {
    for (int t = 0; t <= std::min(s, 31); t += s > 31 ? 1 + 2 * t : t < 5 ? 1 : 3) {
      for (const int channels : {1, 3}) {
        const Content content = kAllContents[seed % std::size(kAllContents)];
        expectReferenceBits(
            {content, 19, s < 9 ? 5 : 1, channels, t, s, kSigmas[seed % std::size(kSigmas)], seed});
        ++seed;
      }
    }
  }
}

// Wide enough for several tiles, high enough for more than one below another.
TEST_P(FastKernelTest, TilesMeetWithoutASeam) {
  for (const Content content : kAllContents) {
    expectReferenceBits({content, 300, 20, 3, 3, 7, 5.0, 3});
    expectReferenceBits({content, 7, 530, 3, 2, 4, 3.0, 4});
    expectReferenceBits({content, 290, 6, 1, 3, 8, 8.0, 5});
  }
}

INSTANTIATE_TEST_SUITE_P(Sets, FastKernelTest, ::testing::ValuesIn([] {
                           auto names = instructionSets();
                           std::erase(names, "SCALAR");
                           return names;
                         }()),
                         [](const auto& set) { return set.param; });

TEST(InstructionSetTest, UnknownNamesAreRefused) {
  EXPECT_FALSE(useInstructionSet("MMX"));
  EXPECT_TRUE(useInstructionSet(""));
}

TEST(FastKernelRefusalTest, WhatIsNotAPlainRequestIsLeftToTheReference) {
  const KernelRequest request{Content::kPhoto, 20, 5, 3, 3, 7, 5.0, 1};
  const auto taken = [&](auto change) {
    KernelBuffers buffers(request);
    change(buffers.buffers().weightTable);
    return makeFastKernel(buffers.geometry(), buffers.buffers()) != nullptr;
  };
  if (instructionSets().front() != "SCALAR") {
    EXPECT_TRUE(taken([](WeightTable&) {}));
  }
  EXPECT_FALSE(taken([](WeightTable& table) { table.entries[100] *= 0.99; }));
  EXPECT_FALSE(taken([](WeightTable& table) { table.entries[0] = 0.0; }));
  EXPECT_FALSE(taken([](WeightTable& table) { table.entries.resize(1000); }));
  EXPECT_FALSE(taken([](WeightTable& table) { table = buildWeightTable(std::nan(""), 3); }));
}

TEST(ExactDividerTest, IsFoundWhereThereIsOneAndAgreesUpToTheCutOff) {
  for (int t = 1; t <= 31; ++t) {
    const FilterGeometry g = geometryOfRequest(1, 1, 1, t, 31);
    const int cutOff = distanceIndex(57000, g);
    const auto divider = exactDivider(t, cutOff);
    const bool never = t == 7 || t == 14 || t == 27 || t == 28 || t == 29;
    ASSERT_EQ(divider.has_value(), !never) << t;
    if (never || divider->identity) continue;
    for (std::uint32_t e = 0; e < 65536; ++e) {
      const std::uint32_t sum = std::min(e + divider->increment, 65535U);
      const auto index = static_cast<int>(sum * divider->multiplier >> 16 >> divider->shift);
      const int wanted = distanceIndex(static_cast<int>(e), g);
      ASSERT_TRUE(wanted < cutOff ? index == wanted : index >= cutOff) << t << ", " << e;
    }
  }
  // Sums that stop at 65535 must stand for no weight.
  EXPECT_TRUE(exactDivider(3, 7281).has_value());
  EXPECT_FALSE(exactDivider(3, 7282).has_value());
}

}  // namespace
}  // namespace velmara
