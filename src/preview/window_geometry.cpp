#include "preview/window_geometry.h"

#include <algorithm>
#include <cmath>

namespace velmara {
namespace {

constexpr Size kSmallestWindow{1220.0, 700.0};
constexpr double kShareOfScreen = 0.9;
constexpr double kMarginOfScreen = 0.05;
constexpr double kOverlap = 1.0;

// Window sizes pass through single precision.
double windowLength(double smallest, double visible) {
  return double{static_cast<float>(std::max(smallest, kShareOfScreen * visible))};
}

}  // namespace

MainWindowGeometry mainWindowGeometry(Size visibleScreen) {
  const Rect frame{kMarginOfScreen * visibleScreen.width, kMarginOfScreen * visibleScreen.height,
                   windowLength(kSmallestWindow.width, visibleScreen.width),
                   windowLength(kSmallestWindow.height, visibleScreen.height)};
  return {frame, kSmallestWindow, visibleScreen};
}

Rect topDown(Rect rect, double containerHeight) {
  return {rect.x, containerHeight - rect.y - rect.height, rect.width, rect.height};
}

Rect titleBarFrame(double windowWidth) {
  return {0.0, 0.0, windowWidth, kTitleBarHeight};
}

Rect previewContainerFrame(Size mainContainer, double beforeAfterHeight) {
  return {0.0, 0.0, mainContainer.width, mainContainer.height - beforeAfterHeight + kOverlap};
}

ContainerFrames containerFrames(PreviewStyle style, Size previewContainer) {
  const auto [width, height] = previewContainer;
  if (style != PreviewStyle::kDual) {
    const Rect all{0.0, 0.0, width, height};
    return {all, all};
  }
  const double half = std::floor(width / 2.0);
  return {{0.0, 0.0, half, height}, {half, 0.0, half, height}};
}

}  // namespace velmara
