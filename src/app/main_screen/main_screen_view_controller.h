#pragma once

#include <QPointer>
#include <QWidget>

#include <memory>
#include <string>

#include "app/main_screen/screen_controls.h"
#include "app/main_screen/screen_services.h"
#include "platform/notification_center.h"
#include "preview/drop/dragging_view.h"
#include "preview/preview_controller.h"

class QMenu;

namespace Ui {
class MainScreenViewController;
}

namespace velmara {

class AppStoreWindow;
class ExportOptionsView;
class PreviewInput;
class SaveChangesSheet;
class TipsSheet;

/// The main screen: title bar with the window's own buttons, toolbar, preview, captions, bottom
/// bar. It only wires: what its controls send goes to EditingSession (the photo, its parameters,
/// its run) and PreviewController (what is seen of it), and what they say is shown. Main thread.
class MainScreenViewController : public QWidget, public DropDelegate {
  Q_OBJECT

 public:
  /// An empty screen; loadView() builds it.
  explicit MainScreenViewController(ScreenServices services, QWidget* parent = nullptr);
  ~MainScreenViewController() override;

  // Building the screen, in main_screen_setup.cpp.

  /// The whole screen, once; then as it is without a photo; then its part that shows parameters.
  void loadView();
  void initialSetupView();
  void setupAdjustParamView();
  /// Answer to "notificationSetupHeader".
  void setupTitleBarViewForWindow(const Notification& notification);
  /// Hides the desktop's window buttons.
  void hideTopWindowButtonAfterDelay();

  // Panels and sheets, in main_screen_panels.cpp.

  /// Shows the open panel.
  void btnAddPhotoTapped();
  void photoDraggedWithPath(const std::string& path) override {
    session().photoDraggedWithPath(path);
  }
  /// The save panel's format was chosen, by its index.
  void selectFormat(int index);
  /// Shows in the file manager what was saved last, or else the photo; without one nothing.
  void showInFolder();
  /// Puts the whole photo's result on the clipboard when it is worked out, and tells so.
  void copyResult();
  /// Opens the picture on the clipboard, as if it had been dropped.
  void paste();
  /// The tips, as a sheet.
  void showTipsScreen();
  /// Thanks for feedback that was sent.
  void handleSubmitFeedBack();
  /// Whether the window may close now; otherwise the user is asked, and the answer closes it.
  bool windowShouldClose() { return session().windowShouldClose(); }

  // Actions of the other controls.

  /// Style, size and zoom; the sender's tag says which.
  void btnSingleSplitDualModeTapped(ActionButton* sender);
  void btnSizeTapped(ActionButton* sender);
  void btnZoomInTapped(ActionButton* sender);
  void btnZoomOutTapped(ActionButton* sender);
  /// Moves the slider by whole levels, for the keyboard.
  void changeLevel(int levels);
  /// The window's own buttons.
  void btnMinimizeWindowTapped();
  void btnZoomWindowTapped();
  /// Makes the buttons of sizes say which is chosen.
  void settingUpUIElementsForCurrentSelections();

  /// How many views the screen shows, once the window has it.
  int representedObject = 0;

  /// The parts that are wired.
  EditingSession& session() { return services_.session; }
  PreviewController& preview() { return *preview_; }
  ScreenControls& controls() { return controls_; }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void setupToolbarImages();
  void setupToolTips();
  void setupHelpPopUp();
  void setupActions();
  void setupSlider();
  void connectSession();
  void connectRunState();
  void registerObservers();
  void connectAction(ActionButton* button, void (MainScreenViewController::*action)(ActionButton*));

  bool mayChangePreview();
  void showOpenedPhoto();
  void showLoadedPhoto(const LoadedPhoto& photo);
  void showPhotoLabels(const PhotoFile& selectedImageFile);
  void showParameters();
  void showStyleAndSize();
  void showControls(const ControlStates& states);
  void showSaveChangesSheet(const std::string& header);
  void showSavePanel();
  void showSaved(const std::string& path);
  void showNotice(const QString& text, const QString& toolTip);
  void hideSaved();

  std::unique_ptr<Ui::MainScreenViewController> ui_;
  ScreenServices services_;
  std::unique_ptr<PreviewController> preview_;
  ScreenControls controls_;
  std::unique_ptr<PreviewInput> previewInput_;
  std::shared_ptr<SavePanel> savePanel_;
  std::unique_ptr<ExportOptionsView> viewExportOptions_;
  QPointer<SaveChangesSheet> windowSaveChanges_;
  QPointer<TipsSheet> windowTips_;
  QPointer<AppStoreWindow> windowMain_;
  QMenu* menuHelp_ = nullptr;
  std::string pathToShow_;
};

}  // namespace velmara
