#pragma once

#include <string>
#include <string_view>

#include "base/geometry.h"

namespace velmara {

/// Which sides of the shown picture are larger than its container, and so how the visible region is
/// cut.
enum class RegionCase {
  /// Both: the container's own window is taken.
  kBothOverflow,
  kHeightOverflows,
  kWidthOverflows,
  /// Neither: the region is the whole picture.
  kWholePicture,
};

/// The visible part of a shown picture.
struct RegionCut {
  RegionCase which = RegionCase::kWholePicture;
  /// In the picture's own coordinates, origin at its bottom-left corner.
  Rect rect;
  /// The same in the picture's pixels, counted from its top-left corner: exactly those that are
  /// seen where paintedRect() puts the picture.
  PixelRect pixels;

  friend bool operator==(const RegionCut&, const RegionCut&) = default;
};

/// The visible region of a picture whose frame in its container (of whole pixels) is given, y up.
RegionCut regionCut(Rect picture, Size container);

/// The line that a case is logged with.
std::string_view logLineOf(RegionCase which);

/// How long the capture waits in the case that both sides overflow, in seconds, so that the split
/// line has left the screen.
inline constexpr double kCaptureDelay = 0.2;

/// Where a picture with this frame is painted: whole pixels from the container's top-left corner.
/// Everything that lies over the picture (result, cut, region) is placed by this one rule, so that
/// all of it meets to the pixel however odd the sizes are.
PixelRect paintedRect(Rect picture, Size container);

/// The region file of a photo: in the process's private temporary directory (ending in "/" or not),
/// named after the photo whatever its format.
std::string regionFilePath(const std::string& temporaryDirectory, const std::string& fileName);

}  // namespace velmara
