#include "preview/pan.h"

#include <gtest/gtest.h>

#include <random>

#include "preview/geometry_printing.h"
#include "preview/preview_geometry.h"

namespace velmara {
namespace {

constexpr Size kContainer{1000, 600};

TEST(PanTest, MovesOverflowingSidesAndDropsWhatWouldUncoverAnEdge) {
  struct Case {
    const char* what;
    Rect picture;
    Point from, to;
    bool isTaken;
    Point origin;
  };
  const Rect both{-500, -300, 2000, 1200};
  const Rect wide{-500, 100, 2000, 400};
  const Rect tall{300, -300, 400, 1200};
  const Case cases[] = {
      {"both sides", both, {100, 100}, {130, 60}, true, {-470, -340}},
      {"to the very edge", both, {0, 0}, {500, -300}, true, {0, -600}},
      {"left edge uncovered", both, {0, 0}, {501, 0}, false, {-500, -300}},
      {"right edge uncovered", both, {0, 0}, {-501, 0}, false, {-500, -300}},
      {"bottom edge uncovered drops x too", both, {0, 0}, {10, 301}, false, {-500, -300}},
      {"top edge uncovered", both, {0, 0}, {10, -301}, false, {-500, -300}},
      {"only the width", wide, {0, 0}, {40, 90}, true, {-460, 100}},
      {"only the width, uncovered", wide, {0, 0}, {-501, 0}, false, {-500, 100}},
      {"only the height", tall, {0, 0}, {40, 90}, true, {300, -210}},
      {"only the height, uncovered", tall, {0, 0}, {0, 301}, false, {300, -300}},
      {"fits", {300, 100, 400, 400}, {0, 0}, {5, 5}, false, {300, 100}},
      {"fits exactly", {0, 0, 1000, 600}, {0, 0}, {5, 5}, false, {0, 0}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    const PanStep step = panStep(c.picture, kContainer, c.from, c.to);
    EXPECT_EQ(step.isTaken, c.isTaken);
    EXPECT_EQ(step.frame, (Rect{c.origin.x, c.origin.y, c.picture.width, c.picture.height}));
    EXPECT_EQ(step.lastDragLocation, c.isTaken ? c.to : c.from);
  }
}

TEST(PanTest, IsPossibleOnlyWhileSomethingIsHidden) {
  EXPECT_TRUE(canPan({0, 0, 1001, 10}, kContainer));
  EXPECT_TRUE(canPan({0, 0, 10, 601}, kContainer));
  EXPECT_FALSE(canPan({0, 0, 1000, 600}, kContainer));
}

TEST(PanTest, IsFollowedInsideTheContainerOnly) {
  EXPECT_TRUE(isInside({0, 0}, kContainer));
  EXPECT_TRUE(isInside({999.5, 599.5}, kContainer));
  EXPECT_FALSE(isInside({1000, 10}, kContainer));
  EXPECT_FALSE(isInside({10, -0.5}, kContainer));
}

// Whatever the pointer does, an overflowing picture covers its container.
TEST(PanTest, NeverUncoversTheContainer) {
  std::mt19937 random(7);
  const auto upTo = [&](int limit) { return std::uniform_int_distribution<int>(1, limit)(random); };
  for (int round = 0; round < 300; ++round) {
    const Size container{static_cast<double>(upTo(800)), static_cast<double>(upTo(800))};
    Rect picture =
        centredRect({static_cast<double>(upTo(3000)), static_cast<double>(upTo(3000))}, container);
    Point last{0, 0};
    for (int drag = 0; drag < 20; ++drag) {
      const PanStep step =
          panStep(picture, container, last, {double(upTo(900)), double(upTo(900))});
      picture = step.frame;
      last = step.lastDragLocation;
      if (picture.width > container.width) {
        ASSERT_LE(picture.x, 0.0);
        ASSERT_GE(picture.x + picture.width, container.width);
      }
      if (picture.height > container.height) {
        ASSERT_LE(picture.y, 0.0);
        ASSERT_GE(picture.y + picture.height, container.height);
      }
    }
  }
}

}  // namespace
}  // namespace velmara
