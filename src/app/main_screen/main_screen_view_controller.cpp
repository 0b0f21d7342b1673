#include "app/main_screen/main_screen_view_controller.h"

#include <QEvent>

#include <cmath>
#include <utility>

#include "app/sheets/export_options_view.h"
#include "app/sheets/save_changes_sheet.h"
#include "preview/preview_input.h"
#include "session/photo_labels.h"
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
      services_(std::move(services)),
      session_(services_.photos, *this,
               {services_.engine, services_.mainQueue, services_.globalQueue, services_.timers,
                services_.log, [this] { return loadTestImage(); }}) {
  ui_->setupUi(this);
  // Plain widgets draw a style sheet's background only when told to.
  for (QWidget* view : findChildren<QWidget*>()) {
    if (view->property("role").isValid()) view->setAttribute(Qt::WA_StyledBackground);
  }
  ui_->sliderCustomDenoise->setRange(static_cast<int>(kSliderUnits),
                                     static_cast<int>(10 * kSliderUnits));
  ui_->sliderCustomDenoise->setSingleStep(static_cast<int>(kSliderUnits));
  ui_->sliderCustomDenoise->setPageStep(static_cast<int>(kSliderUnits));
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
  setupActions();
  preview_ = std::make_unique<PreviewController>(
      views, PreviewServices{services_.photos, session_, services_.mainQueue, services_.globalQueue,
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
  connect(ui_->sliderCustomDenoise, &QSlider::valueChanged, this,
          [this] { sliderCustomDenoiseAction(); });
}

MainScreenViewController::~MainScreenViewController() {
  services_.timers.cancel(this);
  services_.center.removeObserver(*this);
}

void MainScreenViewController::btnSingleSplitDualModeTapped(ActionButton* sender) {
  if (!session_.hasPhoto() || session_.runState().isRunningAlgorithm()) {
    showStyleAndSize();
    return;
  }
  preview_->btnSingleSplitDualModeTapped(sender->tag());
  showStyleAndSize();
}

void MainScreenViewController::btnSizeTapped(ActionButton* sender) {
  if (session_.hasPhoto() && !session_.runState().isRunningAlgorithm()) {
    preview_->btnSizeTapped(sender->tag());
  }
  showStyleAndSize();
}

void MainScreenViewController::btnZoomInTapped(ActionButton* sender) {
  ui_->btnZoomOut->setState(0);
  const bool mayZoom = session_.hasPhoto() && !session_.runState().isRunningAlgorithm();
  sender->setState(mayZoom ? 1 : 0);
  if (mayZoom) preview_->btnZoomInTapped();
}

void MainScreenViewController::btnZoomOutTapped(ActionButton* sender) {
  ui_->btnZoomIn->setState(0);
  const bool mayZoom = session_.hasPhoto() && !session_.runState().isRunningAlgorithm();
  sender->setState(mayZoom ? 1 : 0);
  if (mayZoom) preview_->btnZoomOutTapped();
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

void MainScreenViewController::handleSubmitFeedBack() {
  services_.alerts.runModal(
      {tr("Thank you for providing us the feedback.").toStdString(), {}, {tr("OK").toStdString()}});
}

bool MainScreenViewController::isAutoModeOn() const {
  return ui_->btnAutoMode->state() != 0;
}

void MainScreenViewController::setAutoModeOn(bool on) {
  ui_->btnAutoMode->setState(on ? 1 : 0);
}

double MainScreenViewController::sliderCustomDenoise() const {
  return ui_->sliderCustomDenoise->value() / kSliderUnits;
}

void MainScreenViewController::setSliderCustomDenoise(double value) {
  const QSignalBlocker noAction(ui_->sliderCustomDenoise);
  ui_->sliderCustomDenoise->setValue(static_cast<int>(std::lround(value * kSliderUnits)));
}

void MainScreenViewController::setTxtCustomDenoiseVal(const std::string& text) {
  ui_->txtCustomDenoiseVal->setText(QString::fromStdString(text));
}

void MainScreenViewController::setTxtDenoiseMode(const std::string& text) {
  ui_->txtDenoiseMode->setText(QString::fromStdString(text));
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
  const bool hasPhoto = session_.hasPhoto();
  const int style = static_cast<int>(preview_->style());
  for (ActionButton* button : {ui_->btnSingleMode, ui_->btnSplitMode, ui_->btnDualMode}) {
    button->setState(hasPhoto && button->tag() == style ? 1 : 0);
  }
  settingUpUIElementsForCurrentSelections();
}

void MainScreenViewController::showSelectedPhoto(const PhotoFile& selectedImageFile) {
  ui_->btnExport->imgMouseHover = QStringLiteral("save_yellow_selected");
  ui_->lblDimensions->setText(
      QString::fromStdString(dimensionsLabel(selectedImageFile.width, selectedImageFile.height)));
  ui_->lblSize->setText(QString::fromStdString(sizeLabel(selectedImageFile.fileSize)));
  const QString path = QString::fromStdString(pathLabel(selectedImageFile.filePath));
  ui_->lblPath->setText(path);
  ui_->lblPath->setToolTip(path);
  for (QLabel* label : {ui_->lblDimensions, ui_->lblSize, ui_->lblPath}) label->show();
  ui_->vwPreviewContainer->show();
}

void MainScreenViewController::applyControls(const ControlStates& states) {
  controls_.apply(states);
  ui_->vwDragging->setLiesOverPhoto(session_.hasPhoto());
  ui_->vwDragging->setVisible(!states.isDropAreaHidden);
  if (windowMain_ != nullptr) windowMain_->setResizable(states.isWindowResizable);
}

void MainScreenViewController::showProgressBar(double maximum) {
  ui_->progressBar->setRange(0, static_cast<int>(std::ceil(maximum * kProgressUnits)));
  ui_->progressBar->setValue(0);
  ui_->progressBar->show();
}

void MainScreenViewController::setProgressBarValue(double value) {
  ui_->progressBar->setValue(
      std::min(static_cast<int>(value * kProgressUnits), ui_->progressBar->maximum()));
}

void MainScreenViewController::hideProgressBar() {
  ui_->progressBar->hide();
}

bool MainScreenViewController::eventFilter(QObject* watched, QEvent* event) {
  if (watched == ui_->vwMainContainer && event->type() == QEvent::Resize) {
    ui_->vwDragging->setGeometry(ui_->vwMainContainer->rect());
    preview_->windowDidResize();
  }
  return QWidget::eventFilter(watched, event);
}

}  // namespace velmara
