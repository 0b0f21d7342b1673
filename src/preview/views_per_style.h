#pragma once

#include <optional>

#include "preview/preview_flags.h"

namespace velmara {

/// Which views a preview style shows (true) and hides (false); what has no value stays as it is.
struct ViewVisibility {
  std::optional<bool> splitView;
  std::optional<bool> imgDualModeDivider;
  std::optional<bool> imgFilteredImgVWLeft;
  std::optional<bool> imgFilteredImgVWRight;
  std::optional<bool> imgFilteredImgVWLeftForDual;
  std::optional<bool> imgFilteredImgVWRightForDual;
  std::optional<bool> vwBeforeAfter;
  std::optional<bool> vwBefore;
  std::optional<bool> vwAfter;
  std::optional<bool> vwAfterFull;

  friend bool operator==(const ViewVisibility&, const ViewVisibility&) = default;
};

/// When a style is chosen. A style that is none of the three leaves every view as it is.
ViewVisibility viewsForStyle(PreviewStyle style);

/// When the split view is placed over a picture (`hasPicture`) or there is none to place it over.
ViewVisibility viewsForSplitViewPlacement(PreviewStyle style, bool hasPicture);

/// When a new result is laid over the preview. In single style the left view stays hidden.
ViewVisibility viewsForNewResult(PreviewStyle style);

}  // namespace velmara
