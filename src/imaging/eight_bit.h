#pragma once

#include "base/image.h"
#include "base/job_control.h"
#include "base/result.h"
#include "imaging/vips_api.h"

namespace velmara {

/// A picture on its way to a bitmap: 1 to 4 samples of 8 or 16 bits, gray or RGB with or without
/// alpha as the last one, and the profile that stays with it.
struct PlainPicture {
  VipsImagePtr image;
  ColorProfile profile;
};

/// Brings a decoded picture of any kind of colour to gray or RGB, by the rules of readImage.
/// Nothing is computed before the pixels are asked for.
Result<PlainPicture> toPlainPicture(VipsImagePtr image);

/// Computes the pixels of a plain picture from top to bottom, straight into a bitmap; 16 bits
/// become 8 by rounding. Error without words if the decoder fails (takeVipsError has them). A
/// control that is cancelled ends it between strips of rows.
Result<Bitmap> toBitmap(VipsImage* image, const JobControl* control = nullptr);

/// The embedded ICC profile, if it is one for pictures; null if not.
ColorProfile embeddedProfile(const VipsImage* image);

}  // namespace velmara
