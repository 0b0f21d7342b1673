#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>

#include "engine/denoise_algo_implementation.h"
#include "engine/pictures.h"
#include "engine/reference_kernel.h"

namespace velmara {
namespace {

TEST(BandTest, BandsPartTheRows) {
  for (const int height : {5, 1000, 1 << 29}) {  // The product needs more than 32 bits.
    int rows = 0;
    for (int i = 0; i < 8; ++i) {
      const RowRange band = rowsOfBand(height, i, 8);
      EXPECT_EQ(band.begin, rows);
      EXPECT_LE(std::abs(band.end - band.begin - height / 8), 1);
      rows = band.end;
    }
    EXPECT_EQ(rows, height);
  }
}

TEST(PatchDistanceTest, IndexIsTheTruncatedProductNotTheQuotient) {
  const int rows[][3] = {{3, 8, 0},  {3, 9, 1},   {3, 5112, 568}, {1, 195075, 195075}, {7, 49, 0},
                         {7, 50, 1}, {7, 245, 5}, {14, 196, 0},   {14, 197, 1},        {0, 0, 0}};
  for (const auto& [t, distance, index] : rows) {
    EXPECT_EQ(distanceIndex(distance, geometryOfRequest(4, 4, 3, t, 31)), index)
        << t << ", " << distance;
  }
}

TEST(WeightedAverageTest, TruncatesToTheLowByte) {
  const std::pair<double, int> rows[] = {{127.999, 127}, {255.0, 255}, {256.5, 0},
                                         {-0.5, 0},      {1e300, 0},   {std::nan(""), 0}};
  for (const auto& [mean, sample] : rows) EXPECT_EQ(truncatedSample(mean), sample) << mean;
}

TEST(WeightTableTest, IsFlatThenFallsThenEndsAtTheCutOff) {
  const WeightTable table = buildWeightTable(1.0, 3);
  ASSERT_EQ(table.entries.size(), 3U * 65536U);
  for (std::size_t i = 0; i <= 2; ++i) EXPECT_EQ(table.entries[i], 1.0) << i;
  EXPECT_NEAR(table.entries[3], std::exp(-1.0 / 3.0), 1e-15);
  EXPECT_NEAR(table.entries[22], std::exp(-20.0 / 3.0), 1e-15);
  // exp(-7) = 0.00091 is the first under the limit and counts for nothing already.
  EXPECT_EQ(table.entries[23], 0.0);
  EXPECT_EQ(table.entries.back(), 0.0);
  EXPECT_EQ(table.cutOff, 23);
}

TEST(WeightTableTest, EndsOfTheStrengths) {
  const struct {
    double sigma;
    int channels;
    std::int64_t cutOff;
  } cases[] = {
      {0.0, 3, 1},         // Only identical patches count.
      {-1.0, 3, 23},       // The sign of sigma is squared away.
      {1.0, 1, 9},         // exp(-(9 - 2)) is under the limit.
      {200.0, 3, 196607},  // Nothing falls under it: the last entry goes all the same.
      {500.0, 1, 65535},
  };
  for (const auto& c : cases) {
    const WeightTable table = buildWeightTable(c.sigma, c.channels);
    EXPECT_EQ(table.cutOff, c.cutOff) << c.sigma;
    EXPECT_EQ(table.entries[0], 1.0) << c.sigma;
    EXPECT_GT(table.entries[static_cast<std::size_t>(c.cutOff) - 1], 0.0009) << c.sigma;
    EXPECT_EQ(table.entries[static_cast<std::size_t>(c.cutOff)], 0.0) << c.sigma;
  }
  EXPECT_TRUE(buildWeightTable(5.0, 0).entries.empty());
  const std::vector<double> table{1.0, 0.5};
  for (const int outside : {-1, 2}) EXPECT_EQ(weightOf(table, outside), 0.0);
}

// One call of the kernel's door on a picture, as a request would make it.
struct Call {
  DenoiseAlgoImplementation engine{EngineEnvironment{}};
  FilterGeometry g;
  Bytes source, dest;
  FilterBuffers buffers;

  Call(int width, int height, int channels, int t, int s)
      : g(geometryOfRequest(width, height, channels, t, s)),
        source(static_cast<std::size_t>(g.sourceStride() * g.heightIm)),
        dest(static_cast<std::size_t>(width * height * channels), 0xA5) {
    buffers.sourceBytes = source;
    buffers.destBytes = dest;
    buffers.weightTable = buildWeightTable(1.0, channels);
  }
  bool run(int counter = 0, int totalThreads = 1) {
    return engine.processFastNLMeansAlgorithmWithCounter(
        buffers, counter, totalThreads, g.templateWinSize, g.searchWinSize, g.D, g.sr, g.tdiv, g.tr,
        g.H, g.widthDest, g.heightDest, g.channelsDest, g.widthIm, g.heightIm, g.channelsIm,
        g.widthSrc, g.heightSrc, g.channelsSrc);
  }
};

TEST(KernelTest, WithoutAnyWeightThePixelTakesItsRightNeighbour) {
  Call call(2, 1, 3, 1, 3);
  for (std::size_t i = 0; i < call.source.size(); ++i) {
    call.source[i] = static_cast<std::uint8_t>(i);
  }
  call.buffers.weightTable.entries.assign(196608, 0.0);
  ASSERT_TRUE(call.run());
  // Padded rows are 4 pixels: pixel 0 stands at byte 15, its neighbour at 18.
  EXPECT_EQ(call.dest, (Bytes{18, 19, 20, 21, 22, 23}));
}

TEST(KernelTest, WindowWithoutCandidatesGivesBlack) {
  for (const int channels : {1, 3}) {
    Call call(3, 2, channels, 0, 0);
    call.source.assign(call.source.size(), 77);
    ASSERT_TRUE(call.run());
    EXPECT_EQ(call.dest, Bytes(call.dest.size(), 0));
  }
}

TEST(KernelTest, WritesItsOwnBandAndAlwaysCounts) {
  Call call(1, 4, 3, 1, 1);
  for (std::size_t i = 0; i < call.source.size(); ++i) {
    call.source[i] = static_cast<std::uint8_t>(10 + i);
  }
  ASSERT_TRUE(call.run(1, 4));
  EXPECT_EQ(call.dest, (Bytes{0xA5, 0xA5, 0xA5, 13, 14, 15, 0xA5, 0xA5, 0xA5, 0xA5, 0xA5, 0xA5}));
  EXPECT_EQ(call.buffers.completedSlices, 1);
  ASSERT_TRUE(call.run(0, 8));  // An empty band.
  EXPECT_EQ(call.buffers.completedSlices, 2);
}

TEST(KernelTest, LeavesWhatItDoesNotFilterAlone) {
  using Change = void (*)(Call&);
  const Change changes[] = {
      [](Call& c) { c.g.channelsSrc = c.g.channelsDest = c.g.channelsIm = 2; },
      [](Call& c) { c.g.channelsSrc = 1; },
      [](Call& c) { c.g.widthIm += 1; },
      [](Call& c) {
        c.g.heightSrc = c.g.heightDest = 2000000000;
        c.g.heightIm = 2000000002;
      },
      [](Call& c) { c.g.D = 10; },
      [](Call& c) { c.g.tdiv = 1e30; },
      [](Call& c) { c.buffers.destBytes = c.buffers.destBytes.first(17); },
      [](Call& c) { c.buffers.sourceBytes = {}; },
  };
  for (const Change& change : changes) {
    Call call(3, 2, 3, 1, 3);
    change(call);
    EXPECT_TRUE(call.run());
    EXPECT_EQ(call.dest, Bytes(18, 0xA5));
    EXPECT_EQ(call.buffers.completedSlices, 1);
  }
}

}  // namespace
}  // namespace velmara
