#pragma once

#include "base/image.h"
#include "preview/scaled_picture.h"
#include "session/loaded_photo.h"

namespace velmara {

/// What is shown of a photo.
struct ShownPhoto {
  /// Upright, and over black where it is transparent, as its result will be. Not valid if
  /// the memory is not to be had.
  PicturePyramid picture;
  /// The photo's; null for none.
  ColorProfile profile;
};

/// Prepares a photo for showing. Takes its time, so not on the main thread.
ShownPhoto shownPhoto(const LoadedPhoto& photo);

}  // namespace velmara
