#include "app/main_screen/main_screen_view_controller.h"

#include <QEvent>

#include <algorithm>
#include <cmath>
#include <utility>

#include "app/sheets/export_options_view.h"
#include "app/sheets/save_changes_sheet.h"
#include "base/residual.h"
#include "preview/preview_input.h"
#include "session/labels.h"
#include "ui_MainScreenViewController.h"
#include "widgets/app_store_window.h"

namespace velmara {
namespace {

// The slider counts in hundredths of a level: its action takes positions between two levels.
constexpr double kSliderUnits = 100.0;
// The progress bar's steps over the time it stands for.
constexpr double kProgressUnits = 1000.0;

}  // namespace

MainScreenViewController::MainScreenViewController(ScreenServices services, QWidget* parent)
    : QWidget(parent),
      ui_(std::make_unique<Ui::MainScreenViewController>()),
      services_(std::move(services)) {
  ui_->setupUi(this);
  // Plain widgets draw a style sheet's background only when told to.
  for (QWidget* view : findChildren<QWidget*>()) {
    if (view->property("role").isValid()) view->setAttribute(Qt::WA_StyledBackground);
  }
  // The picture keeps its place whether or not the bar is seen.
  QSizePolicy bottom = ui_->vwBottom->sizePolicy();
  bottom.setRetainSizeWhenHidden(true);
  ui_->vwBottom->setSizePolicy(bottom);
  setupSlider();
  setupActions();
  PreviewViews views{ui_->vwMainContainer,
                     ui_->vwPreviewContainer,
                     ui_->vwImageContainer,
                     ui_->vwImageContainerForDualMode,
                     ui_->imgPreviewPhoto,
                     ui_->imgPreviewPhotoForDual,
                     ui_->vwDenoisedPreview,
                     ui_->vwDenoisedPreviewForDual,
                     ui_->imgFilteredImgVWLeft,
                     ui_->imgFilteredImgVWRight,
                     ui_->imgFilteredImgVWLeftForDual,
                     ui_->imgFilteredImgVWRightForDual,
                     ui_->splitView,
                     ui_->imgDualModeDivider,
                     ui_->vwBeforeAfter,
                     ui_->vwBefore,
                     ui_->vwAfter,
                     ui_->vwAfterFull,
                     ui_->vwDragging};
  preview_ = std::make_unique<PreviewController>(
      views, PreviewServices{services_.session, services_.mainQueue, services_.globalQueue,
                             services_.timers, services_.center, services_.log,
                             services_.temporaryDirectory});
  preview_->stateChanged = [this] { showStyleAndSize(); };
  for (QWidget* view : {ui_->vwImageContainer, ui_->vwImageContainerForDualMode}) {
    view->setAttribute(Qt::WA_TransparentForMouseEvents);
  }
  ui_->vwPreviewContainer->setFocusPolicy(Qt::StrongFocus);
  previewInput_ = std::make_unique<PreviewInput>(
      *ui_->vwPreviewContainer, *this, *preview_,
      [this](bool isIn) { controls_.click(isIn ? Control::btnZoomIn : Control::btnZoomOut); });
  connect(ui_->vwMainContainer, &FileDraggingView::imagesHover, ui_->vwDragging,
          &FileDraggingView::setHighlighted);
  ui_->vwMainContainer->installEventFilter(this);
  connectSession();
  connectRunState();
}

MainScreenViewController::~MainScreenViewController() {
  services_.timers.cancel(this);
  services_.center.removeObserver(*this);
  // What the session says on its own way out has nobody left to be shown to.
  session().disconnect(this);
  session().runState().disconnect(this);
}

// Acts when the handle is let go, and at each step by the keyboard or a click on the groove; after
// the event, as a run that disabled the slider in the middle of it would leave it stepping on.
void MainScreenViewController::setupSlider() {
  QSlider* slider = ui_->sliderCustomDenoise;
  slider->setRange(static_cast<int>(kSliderUnits), static_cast<int>(10 * kSliderUnits));
  slider->setSingleStep(static_cast<int>(kSliderUnits));
  slider->setPageStep(static_cast<int>(kSliderUnits));
  slider->setTracking(false);
  connect(slider, &QSlider::sliderMoved, this, [this](int position) {
    ui_->txtCustomDenoiseVal->setText(
        QString::fromStdString(session().levelLabel(position / kSliderUnits)));
  });
  connect(
      slider, &QSlider::sliderReleased, this,
      [this, slider] {
        // Let go where it was taken: nothing has been chosen.
        if (slider->value() == std::lround(session().sliderCustomDenoise() * kSliderUnits)) {
          showParameters();
        }
      },
      Qt::QueuedConnection);
  connect(
      slider, &QSlider::valueChanged, this,
      [this](int value) { session().sliderCustomDenoiseAction(value / kSliderUnits); },
      Qt::QueuedConnection);
}

void MainScreenViewController::connectSession() {
  EditingSession* edit = &session();
  using Session = EditingSession;
  using Screen = MainScreenViewController;
  connect(edit, &Session::photoForgotten, this, [this] {
    pathToShow_.clear();
    initialSetupView();
    setupAdjustParamView();
  });
  connect(edit, &Session::photoOpened, this, &Screen::showOpenedPhoto);
  connect(edit, &Session::photoLoaded, this, &Screen::showLoadedPhoto);
  connect(edit, &Session::photoShown, this, &Screen::showPhotoLabels);
  connect(edit, &Session::parametersChanged, this, &Screen::showParameters);
  connect(edit, &Session::previewFinished, this,
          [this](const Image& result) { preview_->previewFinished(result); });
  connect(edit, &Session::previewResultDropped, this, [this] { preview_->previewResultDropped(); });
  connect(edit, &Session::saveChangesAsked, this, &Screen::showSaveChangesSheet);
  connect(edit, &Session::saveChangesAnswered, this, [this] {
    if (windowSaveChanges_ != nullptr) windowSaveChanges_->closeSheet();
  });
  connect(edit, &Session::savePanelShown, this, &Screen::showSavePanel);
  connect(edit, &Session::savePanelClosed, this, [this] {
    if (savePanel_ != nullptr) savePanel_->cancel();
  });
  connect(edit, &Session::exportButtonReleased, this, [this] { ui_->btnExport->setState(0); });
  connect(edit, &Session::closeButtonReleased, this, [this] { ui_->btnCloseWindow->setState(0); });
  connect(edit, &Session::photoSaved, this, &Screen::showSaved);
  // What it has kept from being filtered.
  connect(edit, &Session::exportEnded, this, [this] {
    if (!preview_->isResultShown()) preview_->cropVisiblePartofImageAndDenoise();
  });
}

void MainScreenViewController::connectRunState() {
  RunState* run = &session().runState();
  connect(run, &RunState::controlsChanged, this, &MainScreenViewController::showControls);
  connect(run, &RunState::progressShown, this, [this](double maximum) {
    ui_->progressBar->setRange(0, static_cast<int>(std::ceil(maximum * kProgressUnits)));
    ui_->progressBar->setValue(0);
    ui_->progressBar->show();
    hideSaved();
  });
  connect(run, &RunState::progressChanged, this, [this](double value) {
    ui_->progressBar->setValue(
        std::min(static_cast<int>(value * kProgressUnits), ui_->progressBar->maximum()));
  });
  connect(run, &RunState::progressHidden, this, [this] { ui_->progressBar->hide(); });
  connect(run, &RunState::defaultModeEntered, this,
          [this] { preview_->setUpPreviewForDenoisedImage(); });
  connect(run, &RunState::settled, this, [this] { preview_->performDenoiseOperation(); });
}

bool MainScreenViewController::mayChangePreview() {
  return session().hasPhoto() && !session().isRunningAlgorithm();
}

void MainScreenViewController::btnSingleSplitDualModeTapped(ActionButton* sender) {
  if (mayChangePreview()) preview_->btnSingleSplitDualModeTapped(sender->tag());
  showStyleAndSize();
}

void MainScreenViewController::btnSizeTapped(ActionButton* sender) {
  if (mayChangePreview()) preview_->btnSizeTapped(sender->tag());
  showStyleAndSize();
}

void MainScreenViewController::btnZoomInTapped(ActionButton* sender) {
  ui_->btnZoomOut->setState(0);
  sender->setState(mayChangePreview() ? 1 : 0);
  if (mayChangePreview()) preview_->btnZoomInTapped();
}

void MainScreenViewController::btnZoomOutTapped(ActionButton* sender) {
  ui_->btnZoomIn->setState(0);
  sender->setState(mayChangePreview() ? 1 : 0);
  if (mayChangePreview()) preview_->btnZoomOutTapped();
}

void MainScreenViewController::changeLevel(int levels) {
  const bool mayChoose = ui_->sliderCustomDenoise->isEnabled() || session().isRunningAlgorithm();
  const double level = std::clamp(session().sliderCustomDenoise() + levels, 1.0, 10.0);
  if (mayChoose && level != session().sliderCustomDenoise()) {
    session().sliderCustomDenoiseAction(level);
  }
}

void MainScreenViewController::btnMinimizeWindowTapped() {
  if (windowMain_ != nullptr) windowMain_->showMinimized();
  services_.timers.after(this, "resetWindowButtons", Seconds(0),
                         [this] { ui_->btnMinimizeWindow->setState(0); });
}

void MainScreenViewController::btnZoomWindowTapped() {
  if (windowMain_ != nullptr) windowMain_->zoom();
  services_.timers.after(this, "resetWindowButtons", Seconds(0),
                         [this] { ui_->btnZoomWindow->setState(0); });
}

void MainScreenViewController::settingUpUIElementsForCurrentSelections() {
  const int tag = static_cast<int>(preview_->size());
  for (ActionButton* button : {ui_->btn100Percent, ui_->btn200Percent, ui_->btnFitScreen}) {
    button->setState(button->tag() == tag ? 1 : 0);
  }
}

void MainScreenViewController::showStyleAndSize() {
  ui_->txtZoomLevel->setText(
      QString::fromStdString(zoomLabel(preview_ ? preview_->currentZooomFactor() : 1.0F)));
  if (preview_ == nullptr) return;
  const bool hasPhoto = session().hasPhoto();
  const bool isNoise = preview_->isNoiseMode();
  const int style = isNoise ? PreviewController::kNoiseTag : static_cast<int>(preview_->style());
  for (ActionButton* button :
       {ui_->btnSingleMode, ui_->btnSplitMode, ui_->btnDualMode, ui_->btnNoiseMode}) {
    button->setState(hasPhoto && button->tag() == style ? 1 : 0);
  }
  // Until it is there the photo is seen.
  ui_->lblAfterFull->setText(preview_->isNoiseSeen() ? tr("Removed Noise × %1").arg(kResidualGain)
                             : isNoise               ? tr("Before")
                                                     : tr("After"));
  settingUpUIElementsForCurrentSelections();
}

void MainScreenViewController::showOpenedPhoto() {
  preview_->resetState();
  ui_->btnZoomIn->setState(0);
  ui_->btnZoomOut->setState(0);
  ui_->vwPreviewContainer->show();
  ui_->vwDragging->hide();
  hideSaved();
  pathToShow_ =
      session().isPhotoTemporary() ? std::string() : session().selectedImageFile()->filePath;
}

void MainScreenViewController::showLoadedPhoto(const LoadedPhoto& photo) {
  showPhotoLabels(photo.record);
  // Arrow keys and the space bar are about the picture now.
  controls_.forgetFocus();
  ui_->vwPreviewContainer->setFocus();
  preview_->openPhoto(photo);
}

void MainScreenViewController::showPhotoLabels(const PhotoFile& selectedImageFile) {
  ui_->btnExport->imgMouseHover = QStringLiteral("save_yellow_selected");
  ui_->lblDimensions->setText(QString::fromStdString(dimensionsLabel(selectedImageFile)));
  ui_->lblSize->setText(QString::fromStdString(sizeLabel(selectedImageFile.fileSize)));
  const QString path = session().isPhotoTemporary()
                           ? tr("From the clipboard")
                           : QString::fromStdString(pathLabel(selectedImageFile.filePath));
  ui_->lblPath->setText(path);
  ui_->lblPath->setToolTip(path);
  ui_->vwBottom->show();
  ui_->vwPreviewContainer->show();
}

void MainScreenViewController::showParameters() {
  ui_->btnAutoMode->setState(session().isAutoModeOn() ? 1 : 0);
  ui_->btnDeepMode->setState(session().isDeepModeOn() ? 1 : 0);
  ui_->lblNoise->setVisible(session().isNoiseBeyondLevels());
  const auto gauge = session().noiseGauge();
  ui_->vwNoiseGauge->setVisible(gauge.has_value());
  if (gauge) {
    ui_->vwNoiseGauge->setValues(gauge->asked, gauge->chosen, QString::fromStdString(gauge->text));
  }
  // While the handle is held, it and its label are the user's.
  if (!ui_->sliderCustomDenoise->isSliderDown()) {
    const QSignalBlocker noAction(ui_->sliderCustomDenoise);
    ui_->sliderCustomDenoise->setValue(
        static_cast<int>(std::lround(session().sliderCustomDenoise() * kSliderUnits)));
    ui_->txtCustomDenoiseVal->setText(QString::fromStdString(session().txtCustomDenoiseVal()));
  }
  ui_->txtDenoiseMode->setText(QString::fromStdString(session().txtDenoiseMode()));
  settingUpUIElementsForCurrentSelections();
}

void MainScreenViewController::showControls(const ControlStates& states) {
  controls_.apply(states);
  ui_->vwDragging->setLiesOverPhoto(session().hasPhoto());
  ui_->vwDragging->setVisible(!states.isDropAreaHidden);
  ui_->btnCancelRun->setVisible(session().isRunningAlgorithm());
  if (windowMain_ != nullptr) windowMain_->setResizable(states.isWindowResizable);
}

bool MainScreenViewController::eventFilter(QObject* watched, QEvent* event) {
  if (watched == ui_->vwMainContainer && event->type() == QEvent::Resize) {
    ui_->vwDragging->setGeometry(ui_->vwMainContainer->rect());
    preview_->windowDidResize();
  }
  return QWidget::eventFilter(watched, event);
}

}  // namespace velmara
