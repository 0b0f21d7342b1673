#include "engine/fast/fast_kernel.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <random>
#include <sstream>

#include "base/pixel_operations.h"
#include "engine/band_run.h"
#include "engine/fast/fast_plan.h"
#include "engine/fast/instruction_sets.h"
#include "engine/pictures.h"
#include "engine/reference_kernel.h"

namespace velmara {
namespace {

constexpr std::size_t kGuard = 64;
constexpr std::uint8_t kSentinel = 0xA5;

template <class T, std::size_t kCount>
T oneOf(std::mt19937_64& random, const T (&choices)[kCount]) {
  return choices[random() % kCount];
}

// One request to the kernels, small enough for the reference.
struct KernelRequest {
  Content content = Content::kPhoto;
  int width = 1, height = 1, channels = 3;
  int t = 3, s = 7;
  double sigma = 5.0;
  std::uint64_t seed = 1;

  std::string text() const {
    std::ostringstream out;
    out << width << " x " << height << " x " << channels << ", t " << t << ", s " << s << ", sigma "
        << sigma << ", content " << static_cast<int>(content) << ", seed " << seed;
    return out.str();
  }
};

// The buffers of a request, its output pre-filled, with untouchable bytes before and behind it.
class KernelBuffers {
 public:
  explicit KernelBuffers(const KernelRequest& request)
      : geometry_(geometryOfRequest(request.width, request.height, request.channels, request.t,
                                    request.s)),
        padded_(withMirroredBorder(makePicture(request.content, request.width, request.height,
                                               request.channels, request.seed),
                                   static_cast<int>(borderOfWindows(request.t, request.s)))),
        output_(static_cast<std::size_t>(request.width * request.height * request.channels) +
                2 * kGuard) {
    buffers_.sourceBytes = padded_.bytes();
    buffers_.destBytes = std::span(output_).subspan(kGuard, output_.size() - 2 * kGuard);
    buffers_.weightTable = buildWeightTable(request.sigma, request.channels);
  }

  const FilterGeometry& geometry() const { return geometry_; }
  FilterBuffers& buffers() { return buffers_; }
  // Runs a kernel over the whole picture in its own tiles; the output, with what surrounds it.
  Bytes run(const FilterKernel& kernel) {
    std::ranges::fill(output_, kSentinel);
    runOneBand(kernel, buffers_, geometry_, {0, geometry_.heightSrc});
    return output_;
  }

 private:
  FilterGeometry geometry_;
  Bitmap padded_;
  Bytes output_;
  FilterBuffers buffers_;
};

// A request with sizes around vector widths and tile edges, windows of 0 to 13 (now and then to
// 64), usual and unusual strengths, and content of every kind, its cost within a limit.
KernelRequest randomRequest(std::mt19937_64& random) {
  constexpr int kWidths[] = {1,   2,   3,   4,   5,   7,   8,   9,   11,  13,  15,  16,
                             17,  23,  31,  32,  33,  40,  63,  64,  65,  70,  97,  121,
                             122, 123, 124, 125, 126, 127, 128, 129, 150, 250, 251, 257};
  constexpr int kHeights[] = {1, 1, 2, 3, 4, 5, 7, 8, 9, 13, 17, 30};
  constexpr double kSigmas[] = {0, 1, 2, 3, 5, 8, 12, 25, 40, 200, -5, 2.5, 17.3};
  constexpr std::int64_t kMostOperations = 600000;
  KernelRequest r;
  r.content = oneOf(random, kAllContents);
  r.channels = random() % 3 == 0 ? 1 : 3;
  r.s = static_cast<int>(random() % 14);
  if (random() % 40 == 0) r.s = 14 + static_cast<int>(random() % 51);
  r.t = static_cast<int>(random() % static_cast<unsigned>(std::min(r.s, 13) + 1));
  if (random() % 2 == 0) r.t = std::min(r.t, 4);
  r.sigma = oneOf(random, kSigmas);
  r.seed = random();
  r.width = oneOf(random, kWidths);
  r.height = oneOf(random, kHeights);
  const std::int64_t cost = std::int64_t{r.s} * r.s * (std::int64_t{r.t} * r.t + 1) * r.channels;
  while (std::int64_t{r.width} * r.height * cost > kMostOperations &&
         (r.height > 1 || r.width > 1)) {
    (r.height > 1 ? r.height : r.width) /= 2;
  }
  return r;
}

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
