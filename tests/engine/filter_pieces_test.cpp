#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "engine/denoise_algo_implementation.h"
#include "engine/pictures.h"
#include "engine/reference_kernel.h"

namespace velmara {
namespace {

TEST(BandTest, BandsPartTheRows) {
  EXPECT_EQ(rowsOfBand(1000, 0, 8).end, 125);
  EXPECT_EQ(rowsOfBand(1000, 7, 8).begin, 875);
  EXPECT_EQ(rowsOfBand(1000, 7, 8).end, 1000);
  EXPECT_EQ(rowsOfBand(1 << 29, 7, 8).end, 1 << 29);  // The product needs more than 32 bits.
  int rows = 0;
  int empty = 0;
  for (int i = 0; i < 8; ++i) {
    const RowRange band = rowsOfBand(5, i, 8);
    EXPECT_EQ(band.begin, rows);
    rows = band.end;
    if (band.begin == band.end) ++empty;
  }
  EXPECT_EQ(rows, 5);
  EXPECT_EQ(empty, 3);
}

TEST(PatchDistanceTest, IndexIsTheTruncatedProductNotTheQuotient) {
  struct Case {
    int t, distance, index;
  };
  const Case cases[] = {{3, 8, 0},  {3, 9, 1},   {3, 5112, 568}, {1, 195075, 195075}, {7, 49, 0},
                        {7, 50, 1}, {7, 245, 5}, {14, 196, 0},   {14, 197, 1},        {0, 0, 0}};
  for (const Case& c : cases) {
    const FilterGeometry g = geometryOfRequest(4, 4, 3, c.t, 31);
    EXPECT_EQ(distanceIndex(c.distance, g), c.index) << c.t << ", " << c.distance;
  }
}

TEST(PatchDistanceTest, OneChannelPatchesAreSheared) {
  // Rows of 8 bytes, patches of 2 x 2: the second row starts 8 - 4 bytes further, not 8.
  FilterGeometry g = geometryOfRequest(4, 4, 1, 2, 2);
  ASSERT_EQ(g.widthIm, 8);
  Bytes bytes(64, 0);
  bytes[13] = 1;    // First row of the candidate patch at 13.
  bytes[14] = 10;   // Its second sample, and the first of the reference's second row at 10 + 4.
  bytes[18] = 100;  // Second sample of the candidate's second row at 13 + 4.
  EXPECT_EQ(patchDistance(SourceSamples(bytes), g, 10, 13), 1 + 100 + 100 + 10000);
  // Before the buffer there are only zeros.
  EXPECT_EQ(patchDistance(SourceSamples(bytes), g, -8, 12), 1 + 10 * 0 + 0 + 0);
}

TEST(WeightedAverageTest, TruncatesToTheLowByte) {
  EXPECT_EQ(truncatedSample(127.999), 127);
  EXPECT_EQ(truncatedSample(255.0), 255);
  EXPECT_EQ(truncatedSample(256.5), 0);
  EXPECT_EQ(truncatedSample(-0.5), 0);
  EXPECT_EQ(truncatedSample(std::numeric_limits<double>::quiet_NaN()), 0);
  EXPECT_EQ(truncatedSample(1e300), 0);
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
  struct Case {
    double sigma;
    int channels;
    std::int64_t cutOff;
  };
  const Case cases[] = {
      {0.0, 3, 1},         // Only identical patches count.
      {-1.0, 3, 23},       // The sign of sigma is squared away.
      {1.0, 1, 9},         // exp(-(9 - 2)) is under the limit.
      {200.0, 3, 196607},  // Nothing falls under it: the last entry goes all the same.
      {500.0, 1, 65535},
  };
  for (const Case& c : cases) {
    const WeightTable table = buildWeightTable(c.sigma, c.channels);
    EXPECT_EQ(table.cutOff, c.cutOff) << c.sigma;
    EXPECT_EQ(table.entries[0], 1.0) << c.sigma;
    EXPECT_GT(table.entries[static_cast<std::size_t>(c.cutOff) - 1], 0.0009) << c.sigma;
    EXPECT_EQ(table.entries[static_cast<std::size_t>(c.cutOff)], 0.0) << c.sigma;
  }
  EXPECT_TRUE(buildWeightTable(5.0, 0).entries.empty());
}

TEST(WeightTableTest, DistancesOutsideTheTableWeighNothing) {
  const std::vector<double> table{1.0, 0.5};
  EXPECT_EQ(weightOf(table, 1), 0.5);
  EXPECT_EQ(weightOf(table, 2), 0.0);
  EXPECT_EQ(weightOf(table, -1), 0.0);
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
