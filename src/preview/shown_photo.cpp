#include "preview/shown_photo.h"

#include "base/alpha.h"
#include "imaging/image_reader.h"
#include "imaging/rotate_with_exif.h"

namespace velmara {
namespace {

bool isSame(const Bitmap& a, const Bitmap& b) {
  return a.bytes().data() == b.bytes().data();
}

// Whether the picture read first is all that an export would find in the file. An export draws it
// onto four samples, but opaque ones, of which the filter makes the same as of three.
bool isWholePhoto(const PhotoFile& photo, const Bitmap& bitmap) {
  const auto sizes = readRepresentationSizes(photo.filePath);
  return sizes && sizes->size() == 1 && bitmap.samplesPerPixel() == 3 &&
         bitmap.width() == photo.width && bitmap.height() == photo.height;
}

}  // namespace

ShownPhoto loadShownPhoto(const PhotoFile& photo) {
  const auto image = readImage(photo.filePath, {Representations::first});
  if (!image) return {};
  const Bitmap& stored = image->bitmap();
  const Bitmap upright = RotateWithEXIF(stored, photo.orientation().value_or(1));
  ShownPhoto shown{PicturePyramid(withoutAlpha(upright)), image->profile(), {}};
  if (shown.picture.isValid() && isSame(shown.picture.picture(), stored) &&
      isWholePhoto(photo, stored)) {
    shown.asStored = *image;
  }
  return shown;
}

}  // namespace velmara
