#include "widgets/split_geometry.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <vector>

namespace velmara {
namespace {

using testing::ElementsAre;

SplitFrames sideBySide(const std::vector<double>& widths, double height = 50) {
  SplitFrames split;
  double x = 0;
  for (const double width : widths) {
    split.frames.emplace_back(x, 0, width, height);
    x += width + 6;
  }
  return split;
}

std::vector<double> extents(const SplitFrames& split) {
  std::vector<double> result;
  for (std::size_t i = 0; i < split.frames.size(); ++i) result.push_back(split.extent(i));
  return result;
}

SplitFrames turned(const SplitFrames& split) {
  SplitFrames result{{}, false};
  for (const QRectF& frame : split.frames) {
    result.frames.emplace_back(frame.y(), frame.x(), frame.height(), frame.width());
  }
  return result;
}

TEST(SplitConstraintsTest, ComeFromTheNeighboursFramesAndLengths) {
  const SplitFrames split = sideBySide({100, 200, 50});
  EXPECT_EQ(lowestPosition(split, 0, 0.0), 0.0);
  EXPECT_EQ(lowestPosition(split, 1, 30.0), 136.0);
  EXPECT_EQ(highestPosition(split, 0, 1.0), 305.0);
  EXPECT_EQ(highestPosition(split, 1, 0.0), 362.0);
  EXPECT_EQ(highestPosition(turned(split), 1, 2.0), 360.0);
}

TEST(SplitResizeTest, GivesTheChangeByPriority) {
  using Map = std::map<int, int>;
  const std::map<int, double> lengths{{0, 20.0}, {1, 50.0}};
  const struct {
    Map priorities;
    double change;
    std::vector<double> expected;
  } rows[] = {
      {Map{{0, 0}, {1, 1}}, 40, {140, 100, 60}},
      {Map{{0, 1}, {1, 0}}, 40, {100, 140, 60}},
      {Map{{7, 0}, {-3, 2}}, 40, {100, 100, 100}},  // The lowest number first.
      {Map{{0, 0}, {1, 1}}, -30, {70, 100, 60}},
      {Map{{0, 0}, {1, 1}}, -100, {20, 80, 60}},  // The rest is passed on.
      {Map{{0, 0}, {1, 1}, {2, 2}}, -160, {20, 50, 30}},
      {Map{{0, 0}, {1, 1}, {2, 2}}, -999, {20, 50, 0}},  // Nobody takes the rest.
      {Map{{0, 0}}, -999, {20, 100, 60}},
      {Map{{0, 5}, {1, -1}, {2, 1}}, 10, {100, 110, 60}},  // Indices of no subview.
      {Map{}, 40, {100, 100, 60}},
      {Map{{0, 0}}, 0, {100, 100, 60}},
  };
  for (const auto& row : rows) {
    const SplitFrames before = sideBySide({100, 100, 60});
    const QSizeF oldSize(272, 50);
    const QSizeF newSize(272 + row.change, 80);
    const SplitFrames after =
        resizedByPriority(before, oldSize, newSize, 6, row.priorities, lengths);
    EXPECT_EQ(extents(after), row.expected) << row.change;
    EXPECT_EQ(after.frames, sideBySide(row.expected, 80).frames) << row.change;
    EXPECT_EQ(resizedByPriority(turned(before), oldSize.transposed(), newSize.transposed(), 6,
                                row.priorities, lengths)
                  .frames,
              turned(after).frames)
        << row.change;
  }
}

TEST(SplitResizeTest, ASubviewBelowItsMinimumDoesNotGrowWhenTheViewShrinks) {
  const SplitFrames after = resizedByPriority(sideBySide({5, 100}), {111, 50}, {101, 50}, 6,
                                              {{0, 0}, {1, 1}}, {{0, 20.0}});
  EXPECT_THAT(extents(after), ElementsAre(5, 90));
}

TEST(SplitMoveTest, KeepsTheOuterEdgesAndAThicknessBetween) {
  const SplitFrames split = sideBySide({100, 200, 50});
  const struct {
    double position;
    double firstWidth, secondX, secondWidth;
  } rows[] = {{150, 150, 156, 150},      {0, 0, 6, 300},     {-20, 0, 6, 300},
              {305, 305, 306, 0},        {306, 306, 306, 0}, {900, 306, 306, 0},
              {99.5, 99.5, 105.5, 200.5}};
  for (const auto& row : rows) {
    const SplitFrames moved = withDividerAt(split, 0, row.position, 6);
    EXPECT_EQ(moved.frames[0], QRectF(0, 0, row.firstWidth, 50)) << row.position;
    EXPECT_EQ(moved.frames[1], QRectF(row.secondX, 0, row.secondWidth, 50)) << row.position;
    EXPECT_EQ(moved.frames[2], split.frames[2]) << row.position;
  }
  EXPECT_EQ(withDividerAt(split, 2, 10, 6).frames, split.frames);
  EXPECT_EQ(withDividerAt({}, 0, 10, 6).frames, std::vector<QRectF>());
}

TEST(SplitMoveTest, ALineOnTheLastPointStaysInsideWhenTheViewIsResized) {
  SplitFrames split = withDividerAt(sideBySide({100, 94}), 0, 199, 6);
  double width = 200;
  for (const double next : {230.0, 180.0, 181.0, 500.0, 40.0}) {
    split = resizedByPriority(split, {width, 50}, {next, 50}, 6, {{0, 0}, {1, 1}}, {{1, 1.0}});
    split = settledInBounds(split, {next, 50});
    width = next;
    EXPECT_EQ(split.farEdge(0), width - 1);
    EXPECT_EQ(split.farEdge(1), width);
  }
}

TEST(EaseTest, IsSlowAtBothEndsAndSymmetric) {
  for (const auto& [time, way] :
       {std::pair(0.0, 0.0), std::pair(0.1, 0.0197), std::pair(0.25, 0.129), std::pair(0.5, 0.5),
        std::pair(0.75, 0.871), std::pair(1.0, 1.0)}) {
    EXPECT_NEAR(easeInEaseOut(time), way, 0.001);
  }
}

}  // namespace
}  // namespace velmara
