#include "engine/weight_table.h"

#include <gtest/gtest.h>

#include <cmath>

namespace velmara {
namespace {

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

}  // namespace
}  // namespace velmara
