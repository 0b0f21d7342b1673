#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

#include "support/manual_time.h"
#include "widgets/split_view.h"

namespace velmara {
namespace {

using testing::ElementsAre;
using testing_support::ManualTime;

// Writes down what it is told, and allows everything.
class Listener final : public SplitViewDelegate {
 public:
  double constrainMinCoordinate(const SplitView& /*splitView*/, double /*proposed*/,
                                int /*ofSubviewAt*/) override {
    return 40;
  }
  double constrainMaxCoordinate(const SplitView& splitView, double /*proposed*/,
                                int /*ofSubviewAt*/) override {
    return splitView.width() - 40;
  }
  void resizeSubviewsWithOldSize(SplitView& splitView, const QSizeF& oldSize) override {
    splitView.setSubviewFrames(resizedByPriority(splitView.subviewFrames(), oldSize,
                                                 splitView.size(), splitView.dividerThickness(),
                                                 {{0, 0}}, {}));
  }
  QRectF effectiveRect(const SplitView& /*splitView*/, const QRectF& /*proposed*/,
                       const QRectF& drawn, int /*index*/) override {
    return drawn;
  }
  void splitViewDidResizeSubviews(const SplitView& splitView) override {
    positions.push_back(splitView.positionOfDividerAtIndex(0));
  }
  void splitViewIsAnimating(SplitView& /*splitView*/, bool isAnimating) override {
    animating.push_back(isAnimating);
  }

  std::vector<double> positions;
  std::vector<bool> animating;
};

class SplitViewAnimationTest : public testing::Test {
 protected:
  SplitViewAnimationTest() {
    splitView.setSubviewCount(3);
    splitView.setFrame(QRect(0, 0, 312, 100));  // Three subviews of 100.
    splitView.setDelegate(&listener);
    listener.positions.clear();
  }
  double position(int index = 0) { return splitView.positionOfDividerAtIndex(index); }

  ManualTime time;
  Listener listener;
  CustomizedSplitView splitView{nullptr, time, time};
};

TEST_F(SplitViewAnimationTest, MovesWithinAQuarterSecondAndEasesAtBothEnds) {
  splitView.setPosition(60, 0, true);
  EXPECT_EQ(position(), 100);
  EXPECT_TRUE(splitView.isAnimating());
  time.advance(0.0625);
  EXPECT_LT(position(), 100);
  EXPECT_GT(position(), 94);  // A quarter of the time: an eighth of the way.
  time.advance(0.125);
  EXPECT_LT(position(), 66);
  time.advance(0.0525);
  EXPECT_TRUE(splitView.isAnimating());
  time.advance(0.03);  // A frame late at the most.
  EXPECT_EQ(position(), 60);
  EXPECT_EQ(position(1), 206);
  EXPECT_THAT(listener.animating, ElementsAre(true, false));
  EXPECT_GT(listener.positions.size(), 10U);
  EXPECT_EQ(time.pending(), 0U);
}

TEST_F(SplitViewAnimationTest, SeveralDividersGoInOneAnimation) {
  splitView.setPositions({50, 250, 7}, {0, 1, 9});
  time.advance(0.13);
  EXPECT_NEAR(position(0), 75, 5);
  EXPECT_NEAR(position(1), 228, 5);
  time.advance(0.15);
  EXPECT_EQ(splitView.subviewFrames().frames,
            (std::vector<QRectF>{{0, 0, 50, 100}, {56, 0, 194, 100}, {256, 0, 56, 100}}));
  EXPECT_THAT(listener.animating, ElementsAre(true, false));
  splitView.setPositions({400}, {0});  // Beyond its neighbours: no length becomes negative.
  time.advance(0.3);
  EXPECT_EQ(splitView.subviewFrames().extent(1), 0);
  EXPECT_EQ(splitView.subviewFrames().frames[2], QRectF(256, 0, 56, 100));
}

TEST_F(SplitViewAnimationTest, PlainMovesAndIndicesBeyondTheSubviewsAreNotAnimated) {
  splitView.setPosition(60, 0, false);
  EXPECT_EQ(position(), 60);
  splitView.setPosition(10, 0, false);
  EXPECT_EQ(position(), 40);  // Plain moves obey the delegate's limits.
  splitView.setPosition(60, 3, true);
  splitView.setPosition(60, -1, true);
  EXPECT_FALSE(splitView.isAnimating());
  EXPECT_EQ(time.pending(), 0U);
  EXPECT_TRUE(listener.animating.empty());
}

}  // namespace
}  // namespace velmara
