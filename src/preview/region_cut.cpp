#include "preview/region_cut.h"

#include <algorithm>
#include <cmath>

#include "preview/preview_geometry.h"

namespace velmara {
namespace {

int wholePixel(double value) {
  return static_cast<int>(std::floor(value));
}

RegionCase caseOf(const OverflowFactors& factor) {
  if (factor.overflowsWidth() && factor.overflowsHeight()) return RegionCase::kBothOverflow;
  if (factor.overflowsHeight()) return RegionCase::kHeightOverflows;
  return factor.overflowsWidth() ? RegionCase::kWidthOverflows : RegionCase::kWholePicture;
}

}  // namespace

// Rounding down keeps a picture that covers its container covering it: both its edges are compared
// with whole numbers.
PixelRect paintedRect(Rect picture, Size container) {
  return {wholePixel(picture.x), wholePixel(topDown(picture, container.height).y),
          static_cast<int>(std::lround(picture.width)),
          static_cast<int>(std::lround(picture.height))};
}

RegionCut regionCut(Rect picture, Size container) {
  RegionCut cut;
  const OverflowFactors factor = overflowFactors(picture, container);
  const PixelRect painted = paintedRect(picture, container);
  cut.which = caseOf(factor);
  cut.rect = {0.0, 0.0, picture.width, picture.height};
  cut.pixels = {0, 0, painted.width, painted.height};
  if (factor.overflowsWidth()) {
    cut.rect.x = -picture.x;
    cut.rect.width = container.width;
    cut.pixels.width = std::min(wholePixel(container.width), painted.width);
    cut.pixels.x = std::clamp(-painted.x, 0, painted.width - cut.pixels.width);
  }
  if (factor.overflowsHeight()) {
    cut.rect.y = -picture.y;
    cut.rect.height = container.height;
    cut.pixels.height = std::min(wholePixel(container.height), painted.height);
    cut.pixels.y = std::clamp(-painted.y, 0, painted.height - cut.pixels.height);
  }
  return cut;
}

std::string_view logLineOf(RegionCase which) {
  switch (which) {
    case RegionCase::kBothOverflow:
      return "widthFactor >1.0 && heightFactor > 1.0 !!";
    case RegionCase::kHeightOverflows:
      return "heightFactor > 1.0!!";
    case RegionCase::kWidthOverflows:
      return "widthFactor > 1.0!!";
    case RegionCase::kWholePicture:
      break;
  }
  return "Else in Cropp Visible rect> 1.0!!";
}

std::string regionFilePath(const std::string& temporaryDirectory, const std::string& fileName) {
  const bool isJoined = !temporaryDirectory.empty() && temporaryDirectory.back() == '/';
  return temporaryDirectory + (isJoined ? "" : "/") + fileName;
}

}  // namespace velmara
