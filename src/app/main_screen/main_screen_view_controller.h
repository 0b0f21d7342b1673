#pragma once

#include <QPointer>
#include <QWidget>

#include <memory>
#include <optional>
#include <string>

#include "app/main_screen/screen_controls.h"
#include "app/main_screen/screen_services.h"
#include "platform/notification_center.h"
#include "preview/drop/dragging_view.h"
#include "preview/generation_counter.h"
#include "preview/preview_controller.h"
#include "session/editing_screen.h"
#include "session/editing_session.h"
#include "session/export_formats.h"
#include "session/export_job.h"
#include "session/unsaved_changes.h"

class QMenu;

namespace Ui {
class MainScreenViewController;
}

namespace velmara {

class AppStoreWindow;
class ExportOptionsView;
class PreviewInput;
class SaveChangesSheet;
struct ShownPhoto;
class TipsSheet;

/// The main screen: title bar with the window's own buttons, toolbar, preview, captions, bottom
/// bar. It only joins what does the work: EditingSession (the photo, its parameters, its run) and
/// PreviewController (what is seen of it), and forwards what its controls send. Main thread.
class MainScreenViewController : public QWidget, public EditingScreen, public DropDelegate {
  Q_OBJECT

 public:
  explicit MainScreenViewController(ScreenServices services, QWidget* parent = nullptr);
  ~MainScreenViewController() override;

  // Building the screen, in main_screen_setup.cpp.

  void loadView();
  void initialSetupView();
  void setupAdjustParamView();
  /// Answer to "notificationSetupHeader".
  void setupTitleBarViewForWindow(const Notification& notification);
  void hideTopWindowButtonAfterDelay();

  // Opening photos, in main_screen_opening.cpp.

  void btnAddPhotoTapped();
  void photoDraggedWithPath(const std::string& path) override;
  void updateSelectedImageToBeFilteredWithPath(const std::string& path);
  void saveBookmarkPathsFromTableView();
  void loadLastWorkedImageFromDefaults();

  // Leaving and exporting, in main_screen_export.cpp.

  void btnExportDenoisedImageTapped();
  void selectFormat(int index);
  void saveDenoisedImageInDirectoryPath(const std::string& path, const PhotoFile& photo,
                                        const Image& filteredImage);
  void showAlertForRateApp();
  void btnCloseWindowTapped();
  void btncloseFileFromMenuTapped();
  /// Whether the window may close now; otherwise the user is asked, and the answer closes it.
  bool windowShouldClose();

  // Actions of the other controls.

  void btnAutoModeTapped() { session_.btnAutoModeTapped(); }
  void sliderCustomDenoiseAction() { session_.sliderCustomDenoiseAction(); }
  void btnSingleSplitDualModeTapped(ActionButton* sender);
  void btnSizeTapped(ActionButton* sender);
  void btnZoomInTapped(ActionButton* sender);
  void btnZoomOutTapped(ActionButton* sender);
  /// Moves the slider by whole levels, for the keyboard.
  void changeLevel(int levels);
  /// The tips, as a sheet.
  void showTipsScreen();
  void btnMinimizeWindowTapped();
  void btnZoomWindowTapped();
  void handleSubmitFeedBack();

  // What the session shows.

  bool isAutoModeOn() const override;
  void setAutoModeOn(bool on) override;
  double sliderCustomDenoise() const override;
  void setSliderCustomDenoise(double value) override;
  void setTxtCustomDenoiseVal(const std::string& text) override;
  void setTxtDenoiseMode(const std::string& text) override;
  void settingUpUIElementsForCurrentSelections() override;
  float currentZooomFactor() const override { return preview_->currentZooomFactor(); }
  void showSelectedPhoto(const PhotoFile& selectedImageFile) override;
  void previewFinished(const Image& result) override { preview_->previewFinished(result); }
  void previewResultDropped() override { preview_->previewResultDropped(); }
  void exportFinished(const PhotoFile& photo, const Image& result) override;
  void exportRunFailed() override;
  void applyControls(const ControlStates& states) override;
  void showProgressBar(double maximum) override;
  void setProgressBarValue(double value) override;
  void hideProgressBar() override;
  void setUpPreviewForDenoisedImage() override { preview_->setUpPreviewForDenoisedImage(); }
  void performDenoiseOperation() override { preview_->performDenoiseOperation(); }

  EditingSession& session() { return session_; }
  PreviewController& preview() { return *preview_; }
  ScreenControls& controls() { return controls_; }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void setupToolbarImages();
  void setupToolTips();
  void setupHelpPopUp();
  void setupActions();
  void registerObservers();
  void connectAction(ActionButton* button, void (MainScreenViewController::*action)(ActionButton*));
  Image loadTestImage() const;
  void openOrAsk(const std::string& path);
  void loadPhotoForShowing(const PhotoFile& photo);
  void photoWasLoaded(const PhotoFile& photo, const ShownPhoto& shown);
  void showStyleAndSize();
  EditingFacts editingFacts() const;
  void perform(const UnsavedActions& actions);
  void performAction(const UnsavedAction& action);
  void showSaveChangesSheet(const std::string& header);
  void beginSavePanel();
  void savePanelConfirmed(const std::string& path);
  void exportWhenIdle(const PhotoFile& photo);
  void exportWritten(const ExportOutcome& outcome);
  void offerRating();

  std::unique_ptr<Ui::MainScreenViewController> ui_;
  ScreenServices services_;
  EditingSession session_;
  std::unique_ptr<PreviewController> preview_;
  ScreenControls controls_;
  std::unique_ptr<PreviewInput> previewInput_;
  GenerationCounter loading_;
  UnsavedChanges unsaved_{[this] { return editingFacts(); }};
  ExportFormats formats_;
  std::shared_ptr<SavePanel> savePanel_;
  std::unique_ptr<ExportOptionsView> viewExportOptions_;
  QPointer<SaveChangesSheet> windowSaveChanges_;
  QPointer<TipsSheet> windowTips_;
  std::string fileTypeToExportImage_;
  std::string pathToExportImage_;
  QPointer<AppStoreWindow> windowMain_;
  QMenu* menuHelp_ = nullptr;
  std::shared_ptr<const bool> alive_ = std::make_shared<const bool>(true);
};

}  // namespace velmara
