#include "preview/picture_size.h"

#include <algorithm>
#include <cmath>

#include "session/percent_label.h"

namespace velmara {
namespace {

constexpr double kZoomStep = 0.1;

/// Picture over container, a ratio a side in single precision. The side with the larger ratio is
/// the one that the container limits.
struct FitRatios {
  float width;
  float height;

  FitRatios(Size picture, Size container)
      : width(static_cast<float>(picture.width / container.width)),
        height(static_cast<float>(picture.height / container.height)) {}
};

Size fitted(Size picture, Size container) {
  const FitRatios ratio(picture, container);
  if (ratio.width > ratio.height) {
    return {container.width, picture.height / double{ratio.width}};
  }
  return {picture.width / double{ratio.height}, container.height};
}

// Not the fitted size times the factor: the factor is multiplied in before the division, and the
// last bits follow from that.
Size fittedAtFactor(Size picture, Size container, double factor) {
  const FitRatios ratio(picture, container);
  if (ratio.width <= ratio.height) {
    return {picture.width * factor / double{ratio.height}, container.height * factor};
  }
  return {container.width * factor, picture.height * factor / double{ratio.width}};
}

}  // namespace

SizedPicture pictureForSizeButton(PreviewSize size, Size photo, Size container, float factor) {
  switch (size) {
    case PreviewSize::kActualSize:
      return {photo, 1.0F};
    case PreviewSize::kFitToScreen:
      return {fitted(photo, container), 1.0F};
    case PreviewSize::kDoubleSize:
      return {{2.0 * photo.width, 2.0 * photo.height}, 2.0F};
  }
  return {photo, factor};
}

Size pictureForZoomFactor(PreviewSize size, Size photo, Size container, float factor) {
  if (size == PreviewSize::kFitToScreen) return fittedAtFactor(photo, container, double{factor});
  return {photo.width * double{factor}, photo.height * double{factor}};
}

Size wholePixels(Size size) {
  return {std::max(1.0, std::round(size.width)), std::max(1.0, std::round(size.height))};
}

bool canZoomIn(float factor) {
  return factor < kLargestZoomFactor;
}

bool canZoomOut(float factor) {
  return factor > kSmallestZoomFactor;
}

float zoomedIn(float factor) {
  return static_cast<float>(double{factor} + kZoomStep);
}

float zoomedOut(float factor) {
  return static_cast<float>(double{factor} - kZoomStep);
}

std::string zoomLabel(float factor) {
  return percentLabel(double{factor} * 100.0);
}

}  // namespace velmara
