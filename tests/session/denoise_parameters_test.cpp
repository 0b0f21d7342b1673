#include "session/denoise_parameters.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <utility>

#include "session/noise_gauge.h"

namespace velmara {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
const DenoiseMode kAuto = DenoiseMode::automatic();

DenoiseMode at(int level) {
  return DenoiseMode::manual(level);
}

TEST(NoiseToParametersTest, FollowsTheTableInBothModes) {
  const struct {
    double psnr;
    DenoiseMode mode;
    SigmaThreshold preview, exported;
  } rows[] = {{45, kAuto, {7, 7}, {10, 8}},   {34.999, kAuto, {4, 7}, {7, 8}},
              {35, kAuto, {5, 7}, {8, 8}},    {std::nextafter(30.0, 31.0), kAuto, {4, 7}, {7, 8}},
              {30, kAuto, {5, 7}, {5, 7}},    {std::nextafter(30.0, 29.0), kAuto, {4, 4}, {4, 4}},
              {28.25, kAuto, {7, 7}, {7, 7}}, {26, kAuto, {12, 12}, {12, 12}},
              {0, kAuto, {2, 3}, {2, 3}},     {40, at(10), {8, 10}, {11, 11}},
              {35, at(3), {3, 4}, {6, 5}},    {45, at(1), {4, 2}, {7, 3}},
              {30, at(5), {6, 7}, {6, 7}},    {26, at(10), {15, 16}, {15, 16}},
              {28.6, at(5), {6, 6}, {6, 6}},  {0, at(10), {10, 5}, {10, 5}}};
  for (const auto& row : rows) {
    const auto map = [&](bool exporting) {
      return mapNoiseToParameters(row.psnr, row.mode, exporting, {}).parameters;
    };
    EXPECT_EQ(map(false), row.preview) << row.psnr << " level " << row.mode.denoiseLevelValue;
    EXPECT_EQ(map(true), row.exported) << row.psnr << " level " << row.mode.denoiseLevelValue;
  }
  // Without bound it stays within an int.
  for (const DenoiseMode& mode : {kAuto, at(3)}) {
    const auto mapped = mapNoiseToParameters(kInfinity, mode, true, {}).parameters;
    EXPECT_GT(mapped.SIGMA_VAL, 1'000'000);
    EXPECT_TRUE(mode.isAutoMode || mapped.THRESHOLD_VAL == 5);
  }
}

// What a manual choice stores decides a later one at exactly 30 dB, for as long as the program
// runs. Automatic mode and the middle leave it alone.
TEST(NoiseToParametersTest, ManualChoicesLeaveTheirMappingForLaterOnes) {
  const ManualMapping clean{3.0F, 0.5F, 2.0F, 0.8F};
  const ManualMapping noisy{7.0F, 0.6F, 6.0F, 0.8F};
  const struct {
    double psnr;
    DenoiseMode mode;
    ManualMapping before, after;
    SigmaThreshold parameters;
  } rows[] = {{40, at(2), {}, clean, {4, 3}},     {30, at(10), clean, clean, {8, 7}},
              {27, at(2), clean, noisy, {8, 7}},  {0, at(10), noisy, noisy, {13, 7}},
              {30, at(4), noisy, noisy, {9, 7}},  {45, kAuto, noisy, noisy, {7, 7}},
              {26, kAuto, noisy, noisy, {12, 12}}};
  for (const auto& row : rows) {
    const auto mapped = mapNoiseToParameters(row.psnr, row.mode, false, row.before);
    EXPECT_EQ(mapped.mapping, row.after) << row.psnr;
    EXPECT_EQ(mapped.parameters, row.parameters) << row.psnr << ": " << mapped.parameters.SIGMA_VAL
                                                 << " " << mapped.parameters.THRESHOLD_VAL;
  }
}

TEST(EffectivePsnrTest, FollowsTheZoomOfAPreviewOnly) {
  const struct {
    float psnr;
    bool exporting;
    float zoom;
    double expected;
  } rows[] = {{40, false, 0.5F, 36}, {40, false, 0.95F, 38},
              {40, false, 1.0F, 40}, {40, false, 2.0F, 40},
              {40, true, 0.5F, 40},  {60, false, 1.0F, 45},
              {10, true, 1.0F, 26},  {28, false, 0.6F, 26},
              {0, false, 1.0F, 26},  {static_cast<float>(kInfinity), false, 0.5F, 45}};
  for (const auto& row : rows) {
    EXPECT_NEAR(effectivePsnr(row.psnr, row.exporting, row.zoom), row.expected, 1e-5)
        << row.psnr << " at " << row.zoom;
  }
}

TEST(WindowsTest, RunAndSpeedMeasurementDifferOnEqualWindows) {
  const struct {
    SigmaThreshold parameters;
    DenoiseMode mode;
    FilterParameters run, calibration;
  } rows[] = {{{7, 7}, kAuto, {7, 3, 7}, {7, 3, 7}},     {{5, 3}, kAuto, {5, 3, 4}, {5, 3, 3}},
              {{8, 10}, at(10), {8, 4, 10}, {8, 4, 10}}, {{4, 4}, at(9), {4, 4, 5}, {4, 4, 4}},
              {{4, 2}, at(1), {4, 1, 2}, {4, 1, 2}},     {{3, 2}, at(8), {3, 3, 4}, {3, 3, 3}}};
  for (const auto& row : rows) {
    EXPECT_EQ(filterParameters(row.parameters, row.mode), row.run);
    EXPECT_EQ(calibrationParameters(row.parameters, row.mode), row.calibration);
  }
}

TEST(SliderLevelTest, RoundsByHalfOpenBands) {
  const std::pair<double, int> rows[] = {{1.0, 1},   {1.49, 1},  {1.5, 2},  {2.49, 2},
                                         {5.5, 6},   {9.49, 9},  {9.5, 10}, {10.0, 10},
                                         {0.99, 10}, {-3.0, 10}, {1e9, 10}, {std::nan(""), 10}};
  for (const auto& [value, level] : rows) EXPECT_EQ(denoiseLevelForSliderValue(value), level);
}

TEST(NoiseGaugeTest, PutsTheChosenStrengthBesideTheOneThatTheNoiseAsksFor) {
  const DeepNoise strong = whiteNoise(30.0F);
  const struct {
    NoiseFacts facts;
    std::optional<std::pair<int, int>> askedAndChosen;
  } rows[] = {{{0.0F, 1.0F, {}, kAuto, false, {}}, {}},
              {{28.25F, 1.0F, {}, kAuto, false, {}}, {{5, 5}}},
              {{28.25F, 1.0F, {}, at(9), false, strong}, {{5, 9}}},
              {{45.0F, 0.5F, {}, kAuto, false, {}}, {{4, 4}}},
              {{std::numeric_limits<float>::infinity(), 1.0F, {}, at(3), false, {}}, {{0, 0}}},
              {{28.25F, 1.0F, {}, at(3), true, {}}, {}},
              {{28.25F, 1.0F, {}, kAuto, true, strong}, {{5, 5}}},
              {{0.0F, 1.0F, {}, at(10), true, strong}, {{5, 10}}},
              {{28.25F, 1.0F, {}, at(3), true, whiteNoise(0.0F)}, {{0, 0}}}};
  for (const auto& row : rows) {
    const auto gauge = noiseGauge(row.facts);
    ASSERT_EQ(gauge.has_value(), row.askedAndChosen.has_value());
    if (!gauge) continue;
    EXPECT_EQ(std::pair(gauge->asked, gauge->chosen), *row.askedAndChosen) << gauge->text;
  }
  EXPECT_EQ(noiseGauge(rows[2].facts)->text, "Noise: 28.3 dB. It asks for 5 of 10, 9 is chosen");
}

}  // namespace
}  // namespace velmara
