#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "base/geometry.h"

namespace velmara {

/// `flag_current_Preview_Style`; the values are the tags of the style buttons. A value that is none
/// of the three may come from a wrong tag and is answered by doing nothing.
enum class PreviewStyle : std::int64_t { kSingle = 0, kSplit = 1, kDual = 2 };

/// `flag_current_Preview_Size`; the values are the tags of the size buttons.
enum class PreviewSize : std::int64_t { kActualSize = 0, kFitToScreen = 1, kDoubleSize = 2 };

/// Which sides of the shown picture are larger than its container, and so how the visible region is
/// cut.
enum class RegionCase {
  /// Both: the container's own window is taken.
  kBothOverflow,
  /// One side: the picture's whole length along the other is taken.
  kHeightOverflows,
  kWidthOverflows,
  /// Neither: the region is the whole picture.
  kWholePicture,
};

/// The line that a case is logged with.
std::string_view logLineOf(RegionCase which);

/// What is seen of a photo: the style, the size it is shown at, and where it stands in its
/// container (`vwImageContainer`). A value; whatever zooms or pans gives another one.
///
/// A unit of sizes and frames is one pixel of the shown picture, which is one device pixel, so that
/// a photo at 100 % is sharp on every screen; frames have their origin at the container's
/// bottom-left corner, y up. Pointers are in points from the top-left corner of the preview area,
/// which in dual style holds two containers side by side that show the same.
struct Viewport {
  /// What is chosen; the factor is 1.0 at 100 %.
  PreviewStyle flag_current_Preview_Style = PreviewStyle::kSingle;
  PreviewSize flag_current_Preview_Size = PreviewSize::kFitToScreen;
  float currentZooomFactor = 1.0F;
  /// Of the upright photo, in pixels.
  Size photo;
  /// Of the container, in points.
  Size actualPreviewSize;
  /// Device pixels a point.
  double devicePixelRatio = 1.0;
  /// The frame of the picture.
  Rect rectPreviewPhoto;

  /// The container in whole device pixels.
  Size container() const;

  /// After the size button of a tag was pressed: the factor is that of the size, and the picture
  /// stands in the middle. Fit enlarges a small photo too. A size that is none of the three gives
  /// the photo's own and leaves the factor as it was.
  Viewport withSize(PreviewSize size) const;
  /// The picture scaled for the current size and factor, in the middle or, with an anchor, so that
  /// the place of it that lay under the pointer stays there as far as the picture goes on covering
  /// its container.
  Viewport rescaled(std::optional<Point> anchor = std::nullopt) const;

  /// The factor after one step of 0.1, added in double precision and stored in single; nothing at
  /// the ends, 2.0 and 0.5 (with the steps' rounding 2.0000002 and 0.4999999). The picture is not
  /// rescaled yet.
  std::optional<Viewport> zoomedIn() const;
  std::optional<Viewport> zoomedOut() const;

  /// Whether the picture can be dragged: it is larger than its container one way or the other.
  bool canPan() const { return regionCase() != RegionCase::kWholePicture; }
  /// The step of a pointer that moved. Only the sides that overflow move; a step that would draw an
  /// edge of the picture into the container on one of these sides is dropped as a whole.
  std::optional<Viewport> dragged(Point from, Point to) const;
  /// Moved by so many points, y down, as far as the picture's edges.
  Viewport movedBy(double dx, double dy) const;

  /// Where the picture is painted: whole pixels from the container's top-left corner.
  PixelRect painted() const;
  /// The pixels of the picture that are seen, counted from its top-left corner: the visible region.
  PixelRect seen() const;
  /// Which sides overflow.
  RegionCase regionCase() const;

  friend bool operator==(const Viewport&, const Viewport&) = default;
};

/// A picture's size at a zoom factor: the photo's size times the factor or, at fit to screen, the
/// fitted size times the factor. Ratios are of single precision.
Size pictureForZoomFactor(PreviewSize size, Size photo, Size container, float factor);

/// The whole pixels a picture of a size is made of: rounded to the nearest, at least 1 a side.
Size wholePixels(Size size);

/// The rectangle of a picture in the middle of its container.
Rect centredRect(Size picture, Size container);

/// Where a picture with this frame is painted. Everything that lies over the picture (result, cut,
/// region) is placed by this one rule, so that all of it meets to the pixel however odd the sizes
/// are.
PixelRect paintedRect(Rect picture, Size container);

/// "%.0f %%" of a factor times 100.
std::string zoomLabel(float factor);

}  // namespace velmara
