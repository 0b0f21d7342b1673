#pragma once

#include "base/geometry.h"
#include "base/image.h"

namespace velmara {

/// The pixel count of a canvas for a logical length: rounded to the nearest, at least 1.
int canvasPixels(double length);

/// The part of an image inside a rectangle in its logical units, origin at the bottom-left corner,
/// as an image of the rectangle's size with the same profile. The canvas has one pixel a unit
/// (canvasPixels of each side) and is drawn with drawnPart from the representation that suits it.
/// The image itself if it is not valid or the rectangle has no width or height.
Image croppedImage(const Image& image, const Rect& part);

/// The image at a new logical size, one pixel a unit, drawn likewise; not valid if the input is not
/// or the size has no extent.
Image scaledImage(const Image& image, Size size);

}  // namespace velmara
