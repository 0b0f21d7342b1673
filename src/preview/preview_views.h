#pragma once

#include "preview/viewport.h"

class QFrame;
class QWidget;

namespace velmara {

class CustomizedSplitView;
class PictureView;

/// The views of the preview, by the names of the screen's outlets. Not owned.
struct PreviewViews {
  /// The area, and the containers in it: of the preview, and of the picture left and right.
  QWidget* vwMainContainer = nullptr;
  QWidget* vwPreviewContainer = nullptr;
  QWidget* vwImageContainer = nullptr;
  QWidget* vwImageContainerForDualMode = nullptr;
  /// The photo, in both containers.
  PictureView* imgPreviewPhoto = nullptr;
  PictureView* imgPreviewPhotoForDual = nullptr;
  /// What lies over the photo: the result, and the original left of the line.
  QWidget* vwDenoisedPreview = nullptr;
  QWidget* vwDenoisedPreviewForDual = nullptr;
  PictureView* imgFilteredImgVWLeft = nullptr;
  PictureView* imgFilteredImgVWRight = nullptr;
  PictureView* imgFilteredImgVWLeftForDual = nullptr;
  PictureView* imgFilteredImgVWRightForDual = nullptr;
  /// The split line, and the seam of dual style.
  CustomizedSplitView* splitView = nullptr;
  QFrame* imgDualModeDivider = nullptr;
  /// The captions.
  QWidget* vwBeforeAfter = nullptr;
  QWidget* vwBefore = nullptr;
  QWidget* vwAfter = nullptr;
  QWidget* vwAfterFull = nullptr;
  /// The drop area.
  QWidget* vwDragging = nullptr;
};

/// Shows and hides what belongs to a chosen style. A style that is none of the three leaves every
/// view as it is.
void showViewsForStyle(const PreviewViews& views, PreviewStyle style);

/// The same when the split view is placed over a picture (`hasPicture`) or there is none.
void showViewsForSplitViewPlacement(const PreviewViews& views, PreviewStyle style, bool hasPicture);

/// The same when a new result is laid over the preview. In single style the left view stays hidden.
void showViewsForNewResult(const PreviewViews& views, PreviewStyle style);

}  // namespace velmara
