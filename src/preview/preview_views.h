#pragma once

class QFrame;
class QWidget;

namespace velmara {

class CustomizedSplitView;
class PictureView;

/// The views of the preview, by the names of the screen's outlets. Not owned.
struct PreviewViews {
  QWidget* vwMainContainer = nullptr;
  QWidget* vwPreviewContainer = nullptr;
  QWidget* vwImageContainer = nullptr;
  QWidget* vwImageContainerForDualMode = nullptr;
  PictureView* imgPreviewPhoto = nullptr;
  PictureView* imgPreviewPhotoForDual = nullptr;
  QWidget* vwDenoisedPreview = nullptr;
  QWidget* vwDenoisedPreviewForDual = nullptr;
  PictureView* imgFilteredImgVWLeft = nullptr;
  PictureView* imgFilteredImgVWRight = nullptr;
  PictureView* imgFilteredImgVWLeftForDual = nullptr;
  PictureView* imgFilteredImgVWRightForDual = nullptr;
  CustomizedSplitView* splitView = nullptr;
  QFrame* imgDualModeDivider = nullptr;
  QWidget* vwBeforeAfter = nullptr;
  QWidget* vwBefore = nullptr;
  QWidget* vwAfter = nullptr;
  QWidget* vwAfterFull = nullptr;
  QWidget* vwDragging = nullptr;
};

}  // namespace velmara
