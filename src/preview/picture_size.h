#pragma once

#include <string>

#include "base/geometry.h"
#include "preview/preview_flags.h"

namespace velmara {

/// The size a picture is scaled to for showing, and the zoom factor that multiplies it. A unit is
/// one pixel of the shown picture, which is one device pixel: containers are measured in device
/// pixels, so that a photo at 100 % is sharp on every screen.

/// What a size button asks for.
struct SizedPicture {
  Size size;
  /// `currentZooomFactor` afterwards.
  float zoomFactor = 1.0F;

  friend bool operator==(const SizedPicture&, const SizedPicture&) = default;
};

/// The picture's size and the factor after the size button of a tag was pressed. Fit enlarges a
/// small picture too. A size that is none of the three gives the photo's own size and leaves
/// the factor as it was.
SizedPicture pictureForSizeButton(PreviewSize size, Size photo, Size container, float factor);

/// The picture's size at a zoom factor: the photo's size times the factor or, at fit to screen, the
/// fitted size times the factor.
Size pictureForZoomFactor(PreviewSize size, Size photo, Size container, float factor);

/// The whole pixels a picture of a size is made of: rounded to the nearest, at least 1 a side.
Size wholePixels(Size size);

inline constexpr float kLargestZoomFactor = 2.0F;
inline constexpr float kSmallestZoomFactor = 0.5F;

/// Whether a zoom button acts at this factor.
bool canZoomIn(float factor);
bool canZoomOut(float factor);

/// The factor after one step of 0.1, added in double precision and stored in single. The steps'
/// ends are therefore 2.0000002 and 0.4999999.
float zoomedIn(float factor);
float zoomedOut(float factor);

/// "%.0f %%" of a factor times 100.
std::string zoomLabel(float factor);

}  // namespace velmara
