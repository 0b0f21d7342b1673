#pragma once

#include <optional>

#include "base/bitmap.h"
#include "base/geometry.h"
#include "preview/preview_flags.h"

namespace velmara {

/// A picture and the whole pixels of its container it is painted on, counted from the top-left
/// corner.
struct PlacedPicture {
  Bitmap bitmap;
  PixelRect rect;
};

/// What is laid over the preview.
struct PreviewComposition {
  /// The whole result, centred as an image view of the container's size shows it. In single and
  /// split style for `imgFilteredImgVWRight` in `vwImageContainer`, in dual style for
  /// `imgFilteredImgVWRightForDual` in `vwImageContainerForDualMode`.
  PlacedPicture result;
  /// For `imgFilteredImgVWLeft`, over the result: the original up to the line. Without a bitmap in
  /// dual style.
  PlacedPicture before;
};

/// Composes the split picture for a position of the line, measured from the split view's left edge.
/// `original` is what stands in `imgToBeFilter`, `container` the size of `vwImageContainer`, all in
/// device pixels. Nothing if there is no original or no result or memory does not suffice. Any
/// thread.
std::optional<PreviewComposition> composeSplit(const Bitmap& original, const Bitmap& result,
                                               double dividerPosition, Size container);

/// Composes a new result in a style: it is brought to the original's size first, unless it has it
/// already, so that both match point for point. Any thread, but since it may scale not the main
/// one.
std::optional<PreviewComposition> composeResult(const Bitmap& original, const Bitmap& result,
                                                PreviewStyle style, double dividerPosition,
                                                Size container);

}  // namespace velmara
