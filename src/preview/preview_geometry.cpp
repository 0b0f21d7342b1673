#include "preview/preview_geometry.h"

#include <algorithm>
#include <cmath>

namespace velmara {

ContainerFrames containerFrames(PreviewStyle style, Size previewContainer) {
  const auto [width, height] = previewContainer;
  if (style != PreviewStyle::kDual) {
    const Rect all{0.0, 0.0, width, height};
    return {all, all};
  }
  const double half = std::floor(width / 2.0);
  return {{0.0, 0.0, half, height}, {half, 0.0, half, height}};
}

StyleChange styleChange(PreviewStyle current, PreviewStyle chosen, Size previewContainer) {
  const bool wasDual = current == PreviewStyle::kDual;
  StyleChange change{current, std::nullopt, wasDual, false};
  switch (chosen) {
    case PreviewStyle::kDual:
      if (wasDual) return change;
      break;
    case PreviewStyle::kSplit:
    case PreviewStyle::kSingle:
      if (!wasDual) {
        change.style = chosen;
        return change;
      }
      break;
    default:
      return change;
  }
  change.style = chosen;
  change.layout = containerFrames(chosen, previewContainer);
  change.isDualContainerShown = chosen == PreviewStyle::kDual;
  change.placesSplitView = chosen == PreviewStyle::kSplit;
  return change;
}

Rect centredRect(Size picture, Size container) {
  return {(container.width - picture.width) / 2.0, (container.height - picture.height) / 2.0,
          picture.width, picture.height};
}

Rect rectAround(Point anchor, Rect before, Size picture, Size container) {
  const auto origin = [](double at, double from, double length, double newLength, double room) {
    if (newLength <= room || length <= 0.0) return (room - newLength) / 2.0;
    const double place = std::clamp((at - from) / length, 0.0, 1.0);
    return std::clamp(std::round(at - place * newLength), room - newLength, 0.0);
  };
  return {origin(anchor.x, before.x, before.width, picture.width, container.width),
          origin(anchor.y, before.y, before.height, picture.height, container.height),
          picture.width, picture.height};
}

Rect topDown(Rect rect, double containerHeight) {
  return {rect.x, containerHeight - rect.y - rect.height, rect.width, rect.height};
}

Point topDown(Point point, double containerHeight) {
  return {point.x, containerHeight - point.y};
}

Size devicePixels(Size logical, double devicePixelRatio) {
  return {std::round(logical.width * devicePixelRatio),
          std::round(logical.height * devicePixelRatio)};
}

OverflowFactors overflowFactors(Rect picture, Size container) {
  return {static_cast<float>(picture.width / container.width),
          static_cast<float>(picture.height / container.height)};
}

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

}  // namespace velmara
