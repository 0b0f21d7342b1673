#include "imaging/flip.h"

#include "base/alpha.h"
#include "imaging/rotate_with_exif.h"

namespace velmara {
namespace {

Image mirrored(const Image& image, int orientation) {
  const Bitmap canvas = RotateWithEXIF(asRgba(image.bitmap()), orientation);
  if (!canvas.isValid()) return {};
  return Image({canvas}, image.size(), image.profile());
}

}  // namespace

Image flipImageHorizontally(const Image& image) {
  return mirrored(image, 2);
}

Image flipImageVertically(const Image& image) {
  return mirrored(image, 4);
}

}  // namespace velmara
