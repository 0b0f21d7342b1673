#include "preview/shown_photo.h"

#include "base/pixel_operations.h"
#include "imaging/rotate_with_exif.h"

namespace velmara {

ShownPhoto shownPhoto(const LoadedPhoto& photo) {
  const Bitmap upright =
      RotateWithEXIF(photo.image.bitmap(), photo.record.orientation().value_or(1));
  return {PicturePyramid(withoutAlpha(upright)), photo.image.profile()};
}

}  // namespace velmara
