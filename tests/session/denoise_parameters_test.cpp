#include "session/denoise_parameters.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <ostream>

namespace velmara {

void PrintTo(const SigmaThreshold& p, std::ostream* out) {
  *out << "sigma " << p.SIGMA_VAL << " threshold " << p.THRESHOLD_VAL;
}
void PrintTo(const FilterParameters& p, std::ostream* out) {
  *out << "sigma " << p.sigmaVal << " template " << p.templateWinSize << " search "
       << p.searchWinSize;
}

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

struct ParameterCase {
  double psnr;
  DenoiseMode mode;
  SigmaThreshold preview;
  SigmaThreshold exported;
};

TEST(NoiseToParametersTest, FollowsTheTableInBothModes) {
  const auto automatic = DenoiseMode::automatic();
  const auto manual = [](int level) { return DenoiseMode::manual(level); };
  const ParameterCase cases[] = {
      {45, automatic, {7, 7}, {10, 8}},   {34.999, automatic, {4, 7}, {7, 8}},
      {35, automatic, {5, 7}, {8, 8}},    {std::nextafter(30.0, 31.0), automatic, {4, 7}, {7, 8}},
      {30, automatic, {5, 7}, {5, 7}},    {std::nextafter(30.0, 29.0), automatic, {4, 4}, {4, 4}},
      {28.25, automatic, {7, 7}, {7, 7}}, {26, automatic, {12, 12}, {12, 12}},
      {0, automatic, {2, 3}, {2, 3}},     {40, manual(10), {8, 10}, {11, 11}},
      {35, manual(3), {3, 4}, {6, 5}},    {45, manual(1), {4, 2}, {7, 3}},
      {30, manual(5), {6, 7}, {6, 7}},    {26, manual(10), {15, 16}, {15, 16}},
      {28.6, manual(5), {6, 6}, {6, 6}},  {0, manual(10), {10, 5}, {10, 5}},
  };
  for (const ParameterCase& c : cases) {
    const auto map = [&](bool exporting) {
      return mapNoiseToParameters(c.psnr, c.mode, exporting, {}).parameters;
    };
    EXPECT_EQ(map(false), c.preview) << c.psnr << " level " << c.mode.denoiseLevelValue;
    EXPECT_EQ(map(true), c.exported) << c.psnr << " level " << c.mode.denoiseLevelValue;
  }
}

TEST(NoiseToParametersTest, AutomaticModeAndTheMiddleLeaveTheMappingAlone) {
  const ManualMapping before{3.5F, 0.5F, 2.0F, 0.8F};
  for (const double psnr : {0.0, 26.0, 30.0, 45.0}) {
    EXPECT_EQ(mapNoiseToParameters(psnr, DenoiseMode::automatic(), true, before).mapping, before);
  }
  for (const double psnr : {0.0, 30.0}) {
    EXPECT_EQ(mapNoiseToParameters(psnr, DenoiseMode::manual(4), true, before).mapping, before);
  }
}

// What a manual choice stores decides a later one at exactly 30 dB, for as long as the program
// runs.
TEST(NoiseToParametersTest, ManualChoicesLeaveTheirMappingForLaterOnes) {
  const auto clean = mapNoiseToParameters(40, DenoiseMode::manual(2), false, {});
  EXPECT_EQ(clean.mapping, (ManualMapping{3.0F, 0.5F, 2.0F, 0.8F}));
  const auto middle = mapNoiseToParameters(30, DenoiseMode::manual(10), false, clean.mapping);
  EXPECT_EQ(middle.parameters, (SigmaThreshold{8, 7}));
  const auto noisy = mapNoiseToParameters(27, DenoiseMode::manual(2), false, clean.mapping);
  EXPECT_EQ(noisy.mapping, (ManualMapping{7.0F, 0.6F, 6.0F, 0.8F}));
  EXPECT_EQ(noisy.parameters, (SigmaThreshold{8, 7}));
  const auto unmeasured = mapNoiseToParameters(0, DenoiseMode::manual(10), false, noisy.mapping);
  EXPECT_EQ(unmeasured.parameters, (SigmaThreshold{13, 7}));
}

TEST(NoiseToParametersTest, InfinitePsnrStaysWithinAnInt) {
  const auto automatic = mapNoiseToParameters(kInfinity, DenoiseMode::automatic(), true, {});
  EXPECT_GT(automatic.parameters.SIGMA_VAL, 1'000'000);
  const auto manual = mapNoiseToParameters(kInfinity, DenoiseMode::manual(3), true, {});
  EXPECT_GT(manual.parameters.SIGMA_VAL, 1'000'000);
  EXPECT_EQ(manual.parameters.THRESHOLD_VAL, 5);
}

TEST(EffectivePsnrTest, FollowsTheZoomOfAPreviewOnly) {
  struct Case {
    float psnr;
    bool exporting;
    float zoom;
    double expected;
  };
  const Case cases[] = {
      {40, false, 0.5F, 36}, {40, false, 0.95F, 38},
      {40, false, 1.0F, 40}, {40, false, 2.0F, 40},
      {40, true, 0.5F, 40},  {60, false, 1.0F, 45},
      {10, true, 1.0F, 26},  {28, false, 0.6F, 26},
      {0, false, 1.0F, 26},  {std::numeric_limits<float>::infinity(), false, 0.5F, 45},
  };
  for (const Case& c : cases) {
    EXPECT_NEAR(effectivePsnr(c.psnr, c.exporting, c.zoom), c.expected, 1e-5)
        << c.psnr << " at " << c.zoom;
  }
}

TEST(WindowsTest, RunAndSpeedMeasurementDifferOnEqualWindows) {
  struct Case {
    SigmaThreshold parameters;
    DenoiseMode mode;
    FilterParameters run, calibration;
  };
  const Case cases[] = {
      {{7, 7}, DenoiseMode::automatic(), {7, 3, 7}, {7, 3, 7}},
      {{5, 3}, DenoiseMode::automatic(), {5, 3, 4}, {5, 3, 3}},
      {{8, 10}, DenoiseMode::manual(10), {8, 4, 10}, {8, 4, 10}},
      {{4, 4}, DenoiseMode::manual(9), {4, 4, 5}, {4, 4, 4}},
      {{4, 2}, DenoiseMode::manual(1), {4, 1, 2}, {4, 1, 2}},
      {{3, 2}, DenoiseMode::manual(8), {3, 3, 4}, {3, 3, 3}},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(filterParameters(c.parameters, c.mode), c.run);
    EXPECT_EQ(calibrationParameters(c.parameters, c.mode), c.calibration);
  }
}

TEST(SliderLevelTest, RoundsByHalfOpenBands) {
  struct Case {
    double value;
    int level;
  };
  const Case cases[] = {{1.0, 1},   {1.49, 1},  {1.5, 2},  {2.49, 2},
                        {5.5, 6},   {9.49, 9},  {9.5, 10}, {10.0, 10},
                        {0.99, 10}, {-3.0, 10}, {1e9, 10}, {std::nan(""), 10}};
  for (const Case& c : cases) EXPECT_EQ(denoiseLevelForSliderValue(c.value), c.level) << c.value;
}

}  // namespace
}  // namespace velmara
