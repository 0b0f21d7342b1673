#include "preview/views_per_style.h"

namespace velmara {

ViewVisibility viewsForStyle(PreviewStyle style) {
  ViewVisibility views;
  if (style != PreviewStyle::kSingle && style != PreviewStyle::kSplit &&
      style != PreviewStyle::kDual) {
    return views;
  }
  const bool isComparing = style != PreviewStyle::kSingle;
  views.splitView = style == PreviewStyle::kSplit;
  views.imgDualModeDivider = style == PreviewStyle::kDual;
  views.imgFilteredImgVWLeft = isComparing;
  views.vwBefore = isComparing;
  views.vwAfter = isComparing;
  views.vwAfterFull = !isComparing;
  if (style == PreviewStyle::kDual) views.vwBeforeAfter = true;
  return views;
}

ViewVisibility viewsForSplitViewPlacement(PreviewStyle style, bool hasPicture) {
  ViewVisibility views;
  if (!hasPicture) {
    views.splitView = false;
    return views;
  }
  views.splitView = style == PreviewStyle::kSplit;
  views.imgDualModeDivider = style == PreviewStyle::kDual;
  return views;
}

ViewVisibility viewsForNewResult(PreviewStyle style) {
  ViewVisibility views;
  views.splitView = style == PreviewStyle::kSplit;
  if (style == PreviewStyle::kDual) {
    views.imgFilteredImgVWRight = false;
    views.imgFilteredImgVWLeft = false;
    views.imgFilteredImgVWLeftForDual = false;
    views.imgFilteredImgVWRightForDual = true;
    views.imgDualModeDivider = true;
  } else {
    views.imgFilteredImgVWRight = true;
  }
  return views;
}

}  // namespace velmara
