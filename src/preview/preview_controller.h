#pragma once

#include <functional>
#include <memory>
#include <optional>

#include "base/bitmap.h"
#include "base/image.h"
#include "base/task_queue.h"
#include "platform/timer.h"
#include "preview/generation_counter.h"
#include "preview/picture_pyramid.h"
#include "preview/preview_flags.h"
#include "preview/preview_geometry.h"
#include "preview/preview_views.h"
#include "preview/region_cut.h"
#include "preview/scaled_picture.h"
#include "preview/split_composition.h"
#include "preview/views/screen_colors.h"
#include "preview/views_per_style.h"
#include "session/editing_session.h"
#include "widgets/custom_split_view_delegate.h"

namespace velmara {

/// What the preview works with; all of it must outlive the controller and its work on the queues.
struct PreviewServices {
  PhotoSlots& photos;
  EditingSession& session;
  TaskQueue& mainQueue;
  TaskQueue& globalQueue;
  TimerScheduler& timers;
  NotificationCenter& center;
  LogSink log;
  /// Ends in "/"; where the region file goes.
  std::string temporaryDirectory;
};

/// The preview half of the main screen: styles, zoom, pan, and the denoising of what is seen. The
/// operations carry the names of the main screen's, which forward to them.
///
/// Frames in this class are in device pixels with y up, as the geometry has them; only the views
/// count from the top. Work on pixels runs on the global queue; what it brings back is shown only
/// while nothing has overtaken it. Main thread only.
class PreviewController {
 public:
  PreviewController(PreviewViews views, PreviewServices services);
  PreviewController(const PreviewController&) = delete;
  PreviewController& operator=(const PreviewController&) = delete;
  ~PreviewController();

  // Start, in preview_controller.cpp.

  /// Single style, fit to screen, 100 %, no picture.
  void resetState();
  /// Another photo's picture, upright and opaque. Null while it is still being loaded.
  void setInputOriginalImage(PicturePyramid picture, const ColorProfile& profile);
  bool hasPicture() const { return inputOriginalImage_.isValid(); }
  /// Lays the preview area over the main container.
  void layoutPreviewContainer();

  // Styles, in preview_styles.cpp.

  void btnSingleSplitDualModeTapped(int tag);
  void configurePreviewForSelectedStyle(PreviewStyle style);
  void customizeSubviewsForStyle(PreviewStyle style);
  void configureMainVerticalSplitView();
  void splitViewPositionChanged();
  void setupPreviewOnMovingSplitviewDivider();
  void setUpPreviewForDenoisedImage();

  // Zoom, in preview_zoom.cpp.

  void btnSizeTapped(int tag);
  void resizePreviewImageAndProcessWithTag(PreviewSize size);
  void btnZoomInTapped();
  void btnZoomOutTapped();
  void zoomPreviewsWithCurrentZoomFactor();
  /// Whatever the step zooms keeps the photo's place under the pointer where it is, as far as the
  /// picture goes on covering its container. The pointer is in points of the preview container,
  /// from its top-left corner; in dual style it may lie over either half.
  void zoomAround(Point pointer, const std::function<void()>& step);

  // Pan, in preview_pan.cpp. Points are in points of the preview container, from its top-left
  // corner.

  void mouseDown(Point pointer);
  void mouseDragged(Point pointer);
  void mouseUp();
  /// Moves the picture by so many points, as one drag by the mouse does.
  void panBy(double dx, double dy);
  void performDenoiseOperation();
  /// Takes the result away and lays it over the preview again, for comparing: what a press and a
  /// release of the mouse do on a picture that can be dragged.
  void showOriginal();
  void showResult();

  // The visible region, in preview_region.cpp.

  void cropVisiblePartofImageAndDenoise();
  void windowDidResize();
  void windowDidEndLiveResize();

  /// A preview run's result has come, or has come too late.
  void previewFinished(const Image& result);
  void previewResultDropped();

  PreviewStyle style() const { return style_; }
  PreviewSize size() const { return size_; }
  float currentZooomFactor() const { return currentZooomFactor_; }
  bool isResultShown() const { return imgFilteredOriginal_.isValid(); }
  bool canPanPicture() const;

  /// Told when the zoom label, the style or the size may have changed.
  std::function<void()> stateChanged;

 private:
  struct RegionRequest;
  struct RenderedPicture;
  struct ShownComposition;

  bool isRunning() const { return services_.session.runState().isRunningAlgorithm(); }
  bool mayChange() const { return services_.photos.selectedImageFile.has_value() && !isRunning(); }
  Size containerSize() const;
  Size photoSize() const;
  double dividerPosition() const;
  /// A point of the preview container in the geometry's terms.
  Point inContainer(Point pointer) const;
  void layoutContainers();
  void show(const ViewVisibility& visibility);
  void showPictureAt(const Rect& frame);
  void movePictureTo(const Rect& frame);
  void renderPicture();
  void pictureRendered(const RenderedPicture& picture);
  void hideResult();
  void dropResult();
  void removeOverlays();
  void applyZoom(float factor);
  void postCrop();
  void writeRegion(RegionRequest request);
  void processRegion(const Bitmap& region, const std::string& path);
  void placeComposition(const ShownComposition& composition);
  void installResult(const Bitmap& result, const ShownComposition& composition);
  void notifyState() const;

  PreviewViews views_;
  PreviewServices services_;

  PreviewStyle style_ = PreviewStyle::kSingle;
  PreviewSize size_ = PreviewSize::kFitToScreen;
  float currentZooomFactor_ = 1.0F;
  float lastSplitViewDividerPosPercent_ = 0.0F;
  Size actualPreviewSize_;
  bool isResizingWindow_ = false;
  bool isLayoutStale_ = false;
  bool isClickedImagePreview_ = false;
  bool isDraggedImagePreview_ = false;
  Point lastDragLocation_;
  std::optional<Point> zoomAnchor_;

  /// The photo as opened, upright.
  PicturePyramid inputOriginalImage_;
  /// The whole photo at the shown size.
  ScaledPicture zoomedImage_;
  ScreenColors colors_;
  /// The frame of the picture in its container.
  Rect rectPreviewPhoto_;
  /// What stands in `imgToBeFilter` once the visible region is cut: the region itself.
  Bitmap imgToBeFilter_;
  Bitmap imgFilteredOriginal_;
  Bitmap imgFilteredBeforeClickedPrvw_;

  GenerationCounter generation_;
  /// Which photo's picture is the right one.
  GenerationCounter pictures_;
  bool isRenderingPicture_ = false;
  /// Another picture or size came while one was rendered.
  bool isPictureStale_ = false;
  /// A result came before the picture it belongs over.
  bool isResultWaiting_ = false;
  std::unique_ptr<CustomSplitViewDelegate> splitViewDelegate_;
  std::shared_ptr<const bool> alive_ = std::make_shared<const bool>(true);
};

}  // namespace velmara
