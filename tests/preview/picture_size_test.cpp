#include "preview/picture_size.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "preview/geometry_printing.h"

namespace velmara {
namespace {

constexpr auto kActual = PreviewSize::kActualSize;
constexpr auto kFit = PreviewSize::kFitToScreen;
constexpr auto kDouble = PreviewSize::kDoubleSize;

void expectNear(Size got, Size expected, const std::string& what) {
  EXPECT_NEAR(got.width, expected.width, 1e-3) << what;
  EXPECT_NEAR(got.height, expected.height, 1e-3) << what;
}

TEST(SizeButtonTest, ScalesAndSetsTheFactor) {
  struct Case {
    PreviewSize size;
    Size photo, container;
    SizedPicture expected;
  };
  const Case cases[] = {
      {kActual, {6000, 4000}, {1000, 600}, {{6000, 4000}, 1.0F}},
      {kDouble, {6000, 4000}, {1000, 600}, {{12000, 8000}, 2.0F}},
      {kFit, {6000, 4000}, {1000, 600}, {{900, 600}, 1.0F}},          // the height limits
      {kFit, {6000, 2000}, {1000, 600}, {{1000, 1000.0 / 3}, 1.0F}},  // the width limits
      {kFit, {3000, 9000}, {1000, 600}, {{200, 600}, 1.0F}},          // upright
      {kFit, {10, 10}, {500, 600}, {{500, 500}, 1.0F}},               // enlarged
      {kFit, {1000, 600}, {1000, 600}, {{1000, 600}, 1.0F}},
      {kFit, {1, 1}, {1000, 600}, {{600, 600}, 1.0F}},
      {kFit, {20000, 3}, {1000, 600}, {{1000, 0.15}, 1.0F}},
      {static_cast<PreviewSize>(7), {60, 40}, {1000, 600}, {{60, 40}, 0.7F}},
  };
  for (const Case& c : cases) {
    const auto got = pictureForSizeButton(c.size, c.photo, c.container, 0.7F);
    const auto what =
        testing::PrintToString(c.photo) + " in " + testing::PrintToString(c.container);
    expectNear(got.size, c.expected.size, what);
    EXPECT_EQ(got.zoomFactor, c.expected.zoomFactor) << what;
  }
}

TEST(ZoomFactorTest, MultipliesThePhotoOrTheFittedPicture) {
  struct Case {
    PreviewSize size;
    float factor;
    Size photo, container, expected;
  };
  const Case cases[] = {
      {kActual, 0.5F, {6000, 4000}, {1000, 600}, {3000, 2000}},
      {kDouble, 2.0F, {6000, 4000}, {1000, 600}, {12000, 8000}},  // of the photo, not of its double
      {kFit, 1.0F, {6000, 4000}, {1000, 600}, {900, 600}},
      {kFit, 1.5F, {6000, 4000}, {1000, 600}, {1350, 900}},
      {kFit, 0.5F, {6000, 2000}, {1000, 600}, {500, 500.0 / 3}},
      {kFit, 2.0F, {1, 20000}, {1000, 600}, {0.06, 1200}},
  };
  for (const Case& c : cases) {
    expectNear(pictureForZoomFactor(c.size, c.photo, c.container, c.factor), c.expected,
               testing::PrintToString(c.photo));
  }
}

// The ratio of 1000 / 3 in 300 is not a single-precision number: the height shows its rounding.
TEST(ZoomFactorTest, RatiosAreSinglePrecision) {
  const Size fitted = pictureForSizeButton(kFit, {1000, 500}, {300, 300}, 1.0F).size;
  EXPECT_EQ(fitted, (Size{300.0, 500.0 / double{1000.0F / 300.0F}}));
  EXPECT_NE(fitted.height, 150.0);
}

TEST(WholePixelsTest, RoundsAndKeepsAtLeastOne) {
  EXPECT_EQ(wholePixels({899.99996, 600.5}), (Size{900, 601}));
  EXPECT_EQ(wholePixels({0.06, 0.0}), (Size{1, 1}));
  EXPECT_EQ(wholePixels({1000.0, 1000.0 / 3}), (Size{1000, 333}));
}

std::vector<std::string> labelsOfSteps(bool (*canStep)(float), float (*step)(float), int presses) {
  std::vector<std::string> labels;
  float factor = 1.0F;
  for (int press = 0; press < presses && canStep(factor); ++press) {
    factor = step(factor);
    labels.push_back(zoomLabel(factor));
  }
  return labels;
}

TEST(ZoomStepTest, ReachesItsLimitsInTenAndFiveSteps) {
  EXPECT_EQ(labelsOfSteps(canZoomIn, zoomedIn, 20),
            (std::vector<std::string>{"110 %", "120 %", "130 %", "140 %", "150 %", "160 %", "170 %",
                                      "180 %", "190 %", "200 %"}));
  EXPECT_EQ(labelsOfSteps(canZoomOut, zoomedOut, 20),
            (std::vector<std::string>{"90 %", "80 %", "70 %", "60 %", "50 %"}));
}

TEST(ZoomStepTest, TheEndsCarryTheRoundingOfTheSteps) {
  float up = 1.0F;
  for (int i = 0; i < 10; ++i) up = zoomedIn(up);
  float down = 1.0F;
  for (int i = 0; i < 5; ++i) down = zoomedOut(down);
  EXPECT_FLOAT_EQ(up, 2.0000002F);
  EXPECT_GT(up, 2.0F);
  EXPECT_FLOAT_EQ(down, 0.4999999F);
  EXPECT_LT(down, 0.5F);
  EXPECT_TRUE(canZoomOut(up) && canZoomIn(down));
}

// What the size buttons set ends exactly, so it stops the steps as well.
TEST(ZoomStepTest, ExactLimitsStopToo) {
  EXPECT_FALSE(canZoomIn(2.0F));
  EXPECT_FALSE(canZoomOut(0.5F));
}

}  // namespace
}  // namespace velmara
