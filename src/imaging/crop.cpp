#include "imaging/crop.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "imaging/resample.h"

namespace velmara {
namespace {

bool hasExtent(double width, double height) {
  return width > 0.0 && height > 0.0;
}

}  // namespace

int canvasPixels(double length) {
  constexpr double kMost = std::numeric_limits<int>::max();
  return length >= 1.0 ? static_cast<int>(std::min(std::round(length), kMost)) : 1;
}

Image croppedImage(const Image& image, const Rect& part) {
  if (!image.isValid() || !hasExtent(part.width, part.height)) return image;
  const Size size = image.size();
  if (!hasExtent(size.width, size.height)) return image;
  const int width = canvasPixels(part.width);
  const int height = canvasPixels(part.height);
  // What the whole image would need for the canvas to have its pixels one to one.
  const Bitmap& source =
      image.representationForDrawing({std::round(size.width * width / part.width),
                                      std::round(size.height * height / part.height)});
  const double across = source.width() / size.width;
  const double up = source.height() / size.height;
  const Rect pixels = {part.x * across, part.y * up, part.width * across, part.height * up};
  return Image({drawnPart(source, pixels, width, height)}, {part.width, part.height},
               image.profile());
}

Image scaledImage(const Image& image, Size size) {
  if (!image.isValid() || !hasExtent(size.width, size.height)) return {};
  const int width = canvasPixels(size.width);
  const int height = canvasPixels(size.height);
  const Bitmap& source =
      image.representationForDrawing({static_cast<double>(width), static_cast<double>(height)});
  return Image({resampled(source, width, height)}, size, image.profile());
}

}  // namespace velmara
