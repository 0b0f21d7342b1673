#pragma once

#include "base/image.h"
#include "preview/scaled_picture.h"
#include "session/photo_file.h"

namespace velmara {

/// What is shown of a photo.
struct ShownPhoto {
  /// Upright, and over black where it is transparent, as its result will be. Not valid if the file
  /// cannot be decoded.
  PicturePyramid picture;
  ColorProfile profile;
  /// The picture as an export would read it from the file, sharing the shown pixels; not valid
  /// where the two differ.
  Image asStored;
};

/// Decodes a photo for showing. Takes its time, so not on the main thread.
ShownPhoto loadShownPhoto(const PhotoFile& photo);

}  // namespace velmara
