#pragma once

#include "base/bitmap.h"
#include "base/geometry.h"
#include "base/image.h"

namespace velmara {

/// The upright picture of stored pixels under an Exif orientation (tag 274 of Exif 2.32): 2 is
/// mirrored left to right, 3 turned by 180 degrees, 4 mirrored top to bottom, 5 mirrored about the
/// main diagonal, 6 turned by 90 degrees clockwise, 7 mirrored about the other diagonal, 8 turned
/// by 90 degrees anticlockwise. Pixels only change places; 5 to 8 exchange width and height. Any
/// other orientation gives the bitmap unchanged. Not valid if the input is not or the memory is not
/// to be had.
Bitmap RotateWithEXIF(const Bitmap& bitmap, int orientation);

/// Where the pixels of a rectangle of the upright picture are stored, under the same orientations,
/// in a bitmap of width x height pixels.
PixelRect storedRect(const PixelRect& upright, int orientation, int width, int height);

/// Whether an orientation moves any pixel.
constexpr bool isTurnedBy(int orientation) {
  return orientation >= 2 && orientation <= 8;
}

/// Whether an orientation exchanges width and height.
constexpr bool exchangesSides(int orientation) {
  return orientation >= 5 && orientation <= 8;
}

/// The image mirrored left to right, as a 4-sample canvas of its first representation's pixel size.
/// Not valid if the input is not.
Image flipImageHorizontally(const Image& image);

/// The image mirrored top to bottom, likewise.
Image flipImageVertically(const Image& image);

}  // namespace velmara
