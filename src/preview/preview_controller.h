#pragma once

#include <functional>
#include <memory>
#include <optional>

#include "base/image.h"
#include "preview/picture_layer.h"
#include "preview/preview_views.h"
#include "preview/region_run.h"
#include "preview/result_overlay.h"
#include "preview/viewport.h"
#include "widgets/split_view.h"

namespace velmara {

/// The preview half of the main screen, under the names of the screen's operations. It joins what
/// is seen (Viewport), the picture (PictureLayer), the denoising of the visible region (RegionRun)
/// and the result over the picture (ResultOverlay). Main thread only.
class PreviewController {
 public:
  /// Without a photo. Views and services outlive this.
  PreviewController(const PreviewViews& views, const PreviewServices& services);
  PreviewController(const PreviewController&) = delete;
  PreviewController& operator=(const PreviewController&) = delete;
  ~PreviewController();

  /// Single style, fit to screen, 100 %, no picture.
  void resetState();
  /// Another photo's picture, upright and opaque. Null while it is still being loaded.
  void setInputOriginalImage(PicturePyramid picture, const ColorProfile& profile);
  /// Shows a photo just read, in dual style, once its picture is made.
  void openPhoto(const LoadedPhoto& photo);
  /// Whether there is a photo whose picture is made.
  bool hasPicture() const { return picture_.hasPicture(); }

  // Styles.

  /// Single style with what the filter took from the photo (residual()) in the result's place.
  static constexpr int kNoiseTag = 3;
  /// A style by its button's tag; nothing if it is the current one.
  void btnSingleSplitDualModeTapped(int tag);
  /// Another style, with all that follows: containers, picture, result. Refused during a run.
  void configurePreviewForSelectedStyle(PreviewStyle style);
  /// Only shows and hides what belongs to a style.
  void customizeSubviewsForStyle(PreviewStyle style) { showViewsForStyle(views_, style); }
  /// Places the split line over the picture.
  void configureMainVerticalSplitView();
  /// The user moved the line.
  void splitViewPositionChanged();
  /// Cuts the result at the line.
  void setupPreviewOnMovingSplitviewDivider();
  /// Lays a result over the picture it was made of, or asks for another if that is not seen any
  /// more.
  void setUpPreviewForDenoisedImage();

  // Zoom.

  /// A size by its button's tag.
  void btnSizeTapped(int tag);
  /// Another size: moves the picture there and asks for its result. Refused during a run.
  void resizePreviewImageAndProcessWithTag(PreviewSize size);
  /// Moves the picture to a frame in its container, at once, and asks for its result.
  void performZoomAnimationToPreviewsToFitRect(const Rect& rect);
  /// A step of the zoom, if there is a further one.
  void btnZoomInTapped();
  void btnZoomOutTapped();
  /// Makes the picture anew at the factor and the window's size.
  void zoomPreviewsWithCurrentZoomFactor();
  /// Whatever the step zooms keeps the photo's place under the pointer where it is, as far as the
  /// picture goes on covering its container.
  void zoomAround(Point pointer, const std::function<void()>& step);

  // Pan, in preview_pan.cpp. The pointer is in points of the preview container, from its top-left
  // corner; in dual style it may lie over either half.

  /// The left button, which drags a picture that is larger than its container, and hides the result
  /// while it is down.
  void mouseDown(Point pointer);
  void mouseDragged(Point pointer);
  void mouseUp();
  /// Moves the picture by so many points, as far as its edges.
  void panBy(double dx, double dy);
  /// The picture has rested where it was moved to: asks for its result.
  void performDenoiseOperation();
  /// Whether the picture is larger than its container.
  bool canPanPicture() const { return hasPicture() && viewport_.canPan(); }
  /// Takes the result away and lays it over the preview again, for comparing: what a press and a
  /// release of the mouse do on a picture that can be dragged.
  void showOriginal();
  void showResult();

  // The visible region.

  /// Filters what is seen, now.
  void cropVisiblePartofImageAndDenoise();
  /// The window has another size; its edge was let go.
  void windowDidResize();
  void windowDidEndLiveResize();

  /// A preview run's result has come, or has come too late.
  void previewFinished(const Image& result);
  void previewResultDropped() { result_.hide(); }

  /// What is seen.
  PreviewStyle style() const { return viewport_.flag_current_Preview_Style; }
  PreviewSize size() const { return viewport_.flag_current_Preview_Size; }
  float currentZooomFactor() const { return viewport_.currentZooomFactor; }
  bool isResultShown() const { return result_.isValid(); }
  /// Whether the removed noise was asked for, and whether it is what is seen.
  bool isNoiseMode() const { return result_.isResidual(); }
  bool isNoiseSeen() const { return result_.isResidualSeen(); }

  /// Told when the zoom label, the style or the size may have changed.
  std::function<void()> stateChanged;

 private:
  void layoutPreviewContainer();
  void layoutContainers();
  void showPicture(const Viewport& viewport);
  void movePicture(const Viewport& viewport);
  void hideResult();
  void dropResult();
  void applyZoom(const Viewport& zoomed);
  void postCrop();
  void notifyState() const;

  PreviewViews views_;
  PreviewServices services_;
  Viewport viewport_;
  PictureLayer picture_;
  RegionRun region_;
  ResultOverlay result_;
  std::unique_ptr<CustomSplitViewDelegate> splitViewDelegate_;

  float lastSplitViewDividerPosPercent_ = 0.0F;
  bool isResizingWindow_ = false;
  /// A result came before the picture it belongs over.
  bool isResultWaiting_ = false;
  std::optional<Point> zoomAnchor_;
  /// The left button went down on a picture that can be dragged, and is not up yet.
  bool isMouseHeld_ = false;
  bool isClickedImagePreview_ = false;
  bool isDraggedImagePreview_ = false;
  Point lastDragLocation_;
  /// Which photo's picture is the right one.
  GenerationCounter opening_;
  std::shared_ptr<const bool> alive_ = std::make_shared<const bool>(true);
};

}  // namespace velmara
