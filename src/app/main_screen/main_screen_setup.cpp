// How the screen is put together: images, tool tips, actions, shortcuts, observers.
#include <QMenu>

#include <any>
#include <functional>
#include <utility>

#include "app/main_screen/main_screen_view_controller.h"
#include "preview/window_geometry.h"
#include "ui_MainScreenViewController.h"
#include "widgets/app_store_window.h"

namespace velmara {
namespace {

constexpr Seconds kRestoreDelay(0.3);
constexpr Seconds kHideButtonsDelay(0.01);
constexpr int kSliderHeight = 25;

// The images of a button that has one picture a state, and no caps.
void setImages(IMGButton& button, const QString& off, const QString& offDisabled, const QString& on,
               const QString& hover) {
  button.imgOffState_Md = off;
  button.imgOffStateDwn_Md = off;
  button.imgOffStateDis_Md = offDisabled;
  button.imgOnState_Md = on;
  button.imgOnStateDwn_Md = on;
  button.imgOnStateDis_Md = on;
  button.imgMouseHover = hover;
  button.update();
}

}  // namespace

void MainScreenViewController::loadView() {
  ui_->sliderCustomDenoise->setFixedHeight(kSliderHeight);
  ui_->btnFeedback->hide();
  initialSetupView();
  setupAdjustParamView();
  services_.timers.after(this, "loadLastWorkedImageFromDefaults", kRestoreDelay,
                         [this] { session().loadLastWorkedImageFromDefaults(); });
  registerObservers();
}

void MainScreenViewController::registerObservers() {
  const auto observe = [this](std::string_view name, std::function<void()> handler) {
    services_.center.addObserver(
        *this, name, [handler = std::move(handler)](const Notification&) { handler(); });
  };
  observe(notifications::kSpliviewPositionMoved, [this] { preview_->splitViewPositionChanged(); });
  observe(notifications::kOpenPhotoFromMenuTapped, [this] { btnAddPhotoTapped(); });
  observe(notifications::kClosePhotoFromMenuTapped,
          [this] { session().btncloseFileFromMenuTapped(); });
  observe(notifications::kSavePhotoFromMenuTapped,
          [this] { session().btnExportDenoisedImageTapped(); });
  services_.center.addObserver(
      *this, notifications::kSetupHeader,
      [this](const Notification& header) { setupTitleBarViewForWindow(header); });
  observe(notifications::kSubmitFeedback, [this] { handleSubmitFeedBack(); });
}

void MainScreenViewController::initialSetupView() {
  ui_->vwTopContainer->setCursor(Qt::ArrowCursor);
  setupToolbarImages();
  setupToolTips();
  setupHelpPopUp();
  ui_->vwDragging->setDelegate(this);
  ui_->vwMainContainer->setDelegate(this);
  ui_->vwBottom->setImageName(QStringLiteral("footer_bg_mid"));
  ui_->vwBefore->setImageName(QStringLiteral("before_noise_bg"));
  ui_->vwAfter->setImageName(QStringLiteral("after_noise_bg"));
  ui_->vwAfterFull->setImageName(QStringLiteral("after_noise_bg"));
  preview_->resetState();
  ui_->btnZoomIn->setState(0);
  ui_->btnZoomOut->setState(0);
  ui_->progressBar->hide();
  hideSaved();
  ui_->vwDragging->setGeometry(ui_->vwMainContainer->rect());
  ui_->vwDragging->raise();
  ui_->vwDragging->show();
  showStyleAndSize();
}

void MainScreenViewController::setupHelpPopUp() {
  if (menuHelp_ == nullptr) menuHelp_ = new QMenu(this);
  menuHelp_->clear();
  connect(menuHelp_->addAction(tr("Feedback")), &QAction::triggered, this,
          [this] { services_.showFeedback(); });
  connect(menuHelp_->addAction(tr("Help")), &QAction::triggered, this,
          [this] { services_.showVMPHelp(); });
  ui_->btnHelp->setText(QString());
  ui_->btnHelp->setIconName(QStringLiteral("help"));
  ui_->btnHelp->setToggles(false);
}

void MainScreenViewController::setupAdjustParamView() {
  ui_->vwPreviewContainer->hide();
  ui_->vwBottom->hide();
  showParameters();
  showControls(session().runState().controls());
}

void MainScreenViewController::setupToolbarImages() {
  struct Window {
    IMGButton* button;
    const char* prefix;
  };
  for (const Window& w :
       {Window{ui_->btnCloseWindow, "close"}, Window{ui_->btnMinimizeWindow, "min"},
        Window{ui_->btnZoomWindow, "max"}}) {
    const QString prefix = QString::fromLatin1(w.prefix);
    setImages(*w.button, prefix + "-normal", prefix + "-normal", prefix + "-press",
              prefix + "-hover");
  }
  setImages(*ui_->btnAddPhoto, "open_folder", "open_folder", "open_folder_selected",
            "open_folder_yellow_selected");
  setImages(*ui_->btnExport, "save", "save", "save_selected", QString());
  setImages(*ui_->btnBatchProcess, "batch", "batch", "batch", QString());

  ui_->btnSingleMode->setIconName(QStringLiteral("single_mode"));
  ui_->btnSplitMode->setIconName(QStringLiteral("split_mode"));
  ui_->btnDualMode->setIconName(QStringLiteral("dual_mode"));
  ui_->btnNoiseMode->setIconName(QStringLiteral("noise_mode"));
  ui_->btn100Percent->setIconName(QStringLiteral("actual_size"));
  ui_->btn200Percent->setIconName(QStringLiteral("double_size"));
  ui_->btnFitScreen->setIconName(QStringLiteral("fit_screen"));
  ui_->btnZoomIn->setIconName(QStringLiteral("zoom_in"));
  ui_->btnZoomOut->setIconName(QStringLiteral("zoom_out"));
  ui_->btnAutoMode->setIconName(QStringLiteral("auto_mode"));
  ui_->btnDeepMode->setIconName(QStringLiteral("deep_mode"));
  ui_->btnSingleMode->setTag(0);
  ui_->btnSplitMode->setTag(1);
  ui_->btnDualMode->setTag(2);
  ui_->btnNoiseMode->setTag(PreviewController::kNoiseTag);
  ui_->btn100Percent->setTag(0);
  ui_->btn200Percent->setTag(2);
  ui_->btnFitScreen->setTag(1);
}

void MainScreenViewController::setupToolTips() {
  struct ToolTip {
    QWidget* control;
    QString text;
    QString shortcut;
  };
  const ToolTip tips[] = {
      {ui_->btnAddPhoto, tr("Open Image"), "Ctrl+O"},
      {ui_->btnExport, tr("Save"), "Ctrl+S"},
      {ui_->btnBatchProcess, tr("Batch Process"), "Ctrl+B"},
      {ui_->btn100Percent, tr("Actual Size"), "Ctrl+1"},
      {ui_->btn200Percent, tr("Double Size"), "Ctrl+2"},
      {ui_->btnFitScreen, tr("Fit To Screen"), "Ctrl+0"},
      {ui_->btnZoomIn, tr("Zoom In"), "Ctrl++"},
      {ui_->btnZoomOut, tr("Zoom Out"), "Ctrl+-"},
      {ui_->btnSingleMode, tr("Single Mode"), "1"},
      {ui_->btnSplitMode, tr("Split Mode"), "2"},
      {ui_->btnDualMode, tr("Dual Mode"), "3"},
      {ui_->btnNoiseMode, tr("Removed Noise"), "4"},
      {ui_->btnAutoMode, tr("Auto Mode"), "A"},
      {ui_->btnDeepMode, tr("Deep, For Strong Noise"), "D"},
      {ui_->sliderCustomDenoise, tr("Select Denoise Level"), tr("Page Up, Page Down")},
      {ui_->btnHelp, tr("Help"), {}},
      {ui_->btnFeedback, tr("Submit Feedback"), {}},
      {ui_->btnCloseWindow, tr("Close"), "Ctrl+W"},
      {ui_->btnMinimizeWindow, tr("Minimize"), {}},
      {ui_->btnZoomWindow, tr("Zoom"), {}},
      {ui_->btnCancelRun, tr("Stop"), tr("Esc")},
  };
  for (const ToolTip& tip : tips) {
    tip.control->setToolTip(tip.shortcut.isEmpty() ? tip.text
                                                   : tip.text + QLatin1Char('\n') + tip.shortcut);
    tip.control->setAccessibleName(tip.text);
  }
}

void MainScreenViewController::connectAction(
    ActionButton* button, void (MainScreenViewController::*action)(ActionButton*)) {
  connect(button, &ActionButton::actionSent, this, action);
}

void MainScreenViewController::setupActions() {
  const auto connectPlain = [this](ActionButton* button, auto action) {
    connect(button, &ActionButton::actionSent, this, [this, action] { (this->*action)(); });
  };
  using Screen = MainScreenViewController;
  connectPlain(ui_->btnAddPhoto, &Screen::btnAddPhotoTapped);
  connectPlain(ui_->btnMinimizeWindow, &Screen::btnMinimizeWindowTapped);
  connectPlain(ui_->btnZoomWindow, &Screen::btnZoomWindowTapped);
  connect(ui_->btnBatchProcess, &ActionButton::actionSent, this, [this] {
    ui_->btnBatchProcess->setState(0);
    services_.showBatch();
  });
  EditingSession* edit = &session();
  connect(ui_->btnExport, &ActionButton::actionSent, edit,
          &EditingSession::btnExportDenoisedImageTapped);
  connect(ui_->btnCloseWindow, &ActionButton::actionSent, edit,
          &EditingSession::btnCloseWindowTapped);
  connect(ui_->btnAutoMode, &ActionButton::actionSent, edit,
          [this, edit] { edit->btnAutoModeTapped(ui_->btnAutoMode->state() != 0); });
  connect(ui_->btnDeepMode, &ActionButton::actionSent, edit,
          [this, edit] { edit->btnDeepModeTapped(ui_->btnDeepMode->state() != 0); });
  connect(ui_->btnSaved, &QAbstractButton::clicked, this, &Screen::showInFolder);
  connect(ui_->btnCancelRun, &QAbstractButton::clicked, edit, &EditingSession::cancelRun);
  for (ActionButton* button :
       {ui_->btnSingleMode, ui_->btnSplitMode, ui_->btnDualMode, ui_->btnNoiseMode}) {
    connectAction(button, &Screen::btnSingleSplitDualModeTapped);
  }
  for (ActionButton* button : {ui_->btn100Percent, ui_->btn200Percent, ui_->btnFitScreen}) {
    connectAction(button, &Screen::btnSizeTapped);
  }
  connectAction(ui_->btnZoomIn, &Screen::btnZoomInTapped);
  connectAction(ui_->btnZoomOut, &Screen::btnZoomOutTapped);
  connect(ui_->btnHelp, &ActionButton::actionSent, this, [this] {
    menuHelp_->popup(ui_->btnHelp->mapToGlobal(QPoint(0, ui_->btnHelp->height())));
  });

  controls_.setButton(Control::btnAddPhoto, ui_->btnAddPhoto);
  controls_.setButton(Control::btnExport, ui_->btnExport);
  controls_.setButton(Control::btnFitScreen, ui_->btnFitScreen);
  controls_.setButton(Control::btn100Percent, ui_->btn100Percent);
  controls_.setButton(Control::btn200Percent, ui_->btn200Percent);
  controls_.setButton(Control::btnCloseWindow, ui_->btnCloseWindow);
  controls_.setButton(Control::btnMinimizeWindow, ui_->btnMinimizeWindow);
  controls_.setButton(Control::btnZoomWindow, ui_->btnZoomWindow);
  controls_.setButton(Control::btnZoomIn, ui_->btnZoomIn);
  controls_.setButton(Control::btnZoomOut, ui_->btnZoomOut);
  controls_.setButton(Control::btnSingleMode, ui_->btnSingleMode);
  controls_.setButton(Control::btnSplitMode, ui_->btnSplitMode);
  controls_.setButton(Control::btnDualMode, ui_->btnDualMode);
  controls_.setButton(Control::btnNoiseMode, ui_->btnNoiseMode);
  controls_.setButton(Control::btnAutoMode, ui_->btnAutoMode);
  controls_.setButton(Control::btnDeepMode, ui_->btnDeepMode);
  controls_.setSlider(ui_->sliderCustomDenoise);
  controls_.setFocusRefuge(ui_->vwPreviewContainer);
}

void MainScreenViewController::setupTitleBarViewForWindow(const Notification& notification) {
  const auto object = notification.userInfo.find(notifications::kWindowObject);
  if (object == notification.userInfo.end()) return;
  auto* const* window = std::any_cast<AppStoreWindow*>(&object->second);
  if (window == nullptr || *window == nullptr) return;
  windowMain_ = *window;
  windowMain_->setTitleBarView(ui_->vwTopContainer);
  windowMain_->setTitleBarHeight(kTitleBarHeight);
  windowMain_->titleBarAppearance = {.centersTrafficLightButtons = false,
                                     .trafficLightButtonsTopMargin = 3.0,
                                     .trafficLightButtonsLeftMargin = 100.0,
                                     .showsTitle = false};
  connect(windowMain_, &AppStoreWindow::windowDidEndLiveResize, this,
          [this] { preview_->windowDidEndLiveResize(); });
  windowMain_->hideStandardButtons();
  services_.timers.after(this, "hideTopWindowButtonAfterDelay", kHideButtonsDelay,
                         [this] { hideTopWindowButtonAfterDelay(); });
}

void MainScreenViewController::hideTopWindowButtonAfterDelay() {
  if (windowMain_ != nullptr) windowMain_->hideStandardButtons();
}

}  // namespace velmara
