#include "preview/split_line.h"

#include <algorithm>
#include <cmath>

namespace velmara {
namespace {

constexpr float kFirstDividerPercent = 50.0F;
constexpr float kLargestDividerPercent = 90.0F;

}  // namespace

SplitViewPlacement splitViewPlacement(double pictureWidth, Size container, float dividerPercent) {
  SplitViewPlacement placement;
  const float x =
      static_cast<float>(container.width) / 2.0F - static_cast<float>(pictureWidth) / 2.0F;
  placement.frame = x < 0.0F ? Rect{0.0, 0.0, container.width, container.height}
                             : Rect{double{x}, 0.0, pictureWidth, container.height};
  placement.dividerPercent = dividerPercent;
  if (dividerPercent == 0.0F) placement.dividerPercent = kFirstDividerPercent;
  if (dividerPercent >= kLargestDividerPercent) placement.dividerPercent = kLargestDividerPercent;
  placement.dividerPosition =
      placement.dividerPercent * static_cast<float>(placement.frame.width) / 100.0F;
  return placement;
}

std::optional<float> dividerPercent(double dividerPosition, double splitViewWidth) {
  if (!(splitViewWidth > 0.0)) return std::nullopt;
  return static_cast<float>(dividerPosition * 100.0 / splitViewWidth);
}

double cropX(double dividerPosition, double resultWidth, double containerWidth) {
  const double position = dividerPosition <= 0.0 ? 1.0 : dividerPosition;
  const auto ratio = static_cast<float>(containerWidth / resultWidth);
  if (!(ratio < 1.0F)) return position;
  const double column = position + double{1.0F - ratio} * resultWidth / 2.0;
  return column <= 0.0 ? 1.0 : column;
}

PixelRect beforePart(PixelRect result, double dividerPosition, double containerWidth) {
  const double column = std::round(cropX(dividerPosition, result.width, containerWidth));
  result.width = static_cast<int>(std::clamp(column, 1.0, double(result.width)));
  return result;
}

}  // namespace velmara
