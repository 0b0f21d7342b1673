// Saving the whole photo, the questions about unsaved work, and the way out.
#include <algorithm>
#include <filesystem>
#include <utility>

#include "app/main_screen/main_screen_view_controller.h"
#include "app/sheets/export_options_view.h"
#include "app/sheets/save_changes_sheet.h"
#include "session/rate_invitation.h"
#include "ui_MainScreenViewController.h"

namespace velmara {
namespace {

constexpr Seconds kLookAgain(0.1);

}  // namespace

EditingFacts MainScreenViewController::editingFacts() const {
  const auto& photo = services_.photos.selectedImageFile;
  return {photo.has_value(), photo ? photo->fileName : std::string(),
          session_.lastExportedImage.isValid(), session_.runState().isRunningAlgorithm()};
}

void MainScreenViewController::perform(const UnsavedActions& actions) {
  for (const UnsavedAction& action : actions) performAction(action);
}

void MainScreenViewController::performAction(const UnsavedAction& action) {
  using Kind = UnsavedAction::Kind;
  switch (action.kind) {
    case Kind::kShowSaveChangesSheet:
      showSaveChangesSheet(action.text);
      return;
    case Kind::kCloseSheet:
      if (windowSaveChanges_ != nullptr) windowSaveChanges_->closeSheet();
      return;
    case Kind::kTurnCloseButtonOff:
      ui_->btnCloseWindow->setState(0);
      return;
    case Kind::kTurnExportButtonOff:
      ui_->btnExport->setState(0);
      return;
    case Kind::kBeginExport:
      beginSavePanel();
      return;
    case Kind::kForgetPhoto:
      services_.photos.arraySelectedImagesToProcess.clear();
      services_.photos.selectedImageFile.reset();
      services_.photos.selectedImageAsStored = {};
      return;
    case Kind::kRebuildScreen:
      initialSetupView();
      setupAdjustParamView();
      return;
    case Kind::kOpenPhoto:
      updateSelectedImageToBeFilteredWithPath(action.text);
      return;
    case Kind::kOfferRating:
      offerRating();
      return;
    case Kind::kReportFailure:
      services_.alerts.runModal(exportFailedAlert(pathToExportImage_, action.text));
      return;
    case Kind::kTerminate:
    case Kind::kTerminateApp:
      services_.terminateApp();
      return;
  }
}

void MainScreenViewController::showSaveChangesSheet(const std::string& header) {
  if (windowSaveChanges_ == nullptr) {
    windowSaveChanges_ = new SaveChangesSheet(window());
    connect(windowSaveChanges_, &SaveChangesSheet::btnSaveChangesTapped, this,
            [this] { perform(unsaved_.btnSaveChangesTapped()); });
    connect(windowSaveChanges_, &SaveChangesSheet::btnDontSaveChangesTapped, this,
            [this] { perform(unsaved_.btnDontSaveChangesTapped()); });
    connect(windowSaveChanges_, &SaveChangesSheet::btnCancelChangesTapped, this,
            [this] { perform(unsaved_.btnCancelChangesTapped()); });
  }
  windowSaveChanges_->showSheet(header);
}

void MainScreenViewController::btnExportDenoisedImageTapped() {
  perform(unsaved_.exportRequested());
}

void MainScreenViewController::beginSavePanel() {
  const PhotoFile& photo = *services_.photos.selectedImageFile;
  formats_ = exportFormatsFor(photo.fileExtension);
  viewExportOptions_ = std::make_unique<ExportOptionsView>();
  viewExportOptions_->setTitles(formats_.titles);
  viewExportOptions_->setQualityShown(titleHasQuality(formats_.titles.front()));
  connect(viewExportOptions_.get(), &ExportOptionsView::selectFormat, this,
          [this](int index) { selectFormat(index); });
  SavePanelOptions options;
  options.title = tr("Save Image").toStdString();
  options.nameFieldStringValue = std::filesystem::path(photo.fileName).stem().string();
  options.allowedFileTypes = formats_.arrformatsSupportedByIM;
  options.accessoryView = viewExportOptions_.get();
  savePanel_ = services_.panels.beginSavePanel(options, [this](const std::string& path) {
    ui_->btnExport->setState(0);
    path.empty() ? unsaved_.exportCancelled() : savePanelConfirmed(path);
  });
}

void MainScreenViewController::selectFormat(int index) {
  const auto allowed = allowedTypesAt(formats_, static_cast<std::size_t>(index));
  if (allowed.empty()) return;
  viewExportOptions_->setQualityShown(formatHasQuality(allowed.front()));
  if (savePanel_ != nullptr) savePanel_->setAllowedFileTypes(allowed);
}

void MainScreenViewController::savePanelConfirmed(const std::string& path) {
  const PhotoFile& photo = *services_.photos.selectedImageFile;
  if (isPhotosOwnFile(photo, path) &&
      services_.alerts.runModal(replaceOriginalQuestion(photo)) != 0) {
    unsaved_.exportCancelled();
    return;
  }
  const std::string extension = std::filesystem::path(path).extension().string();
  fileTypeToExportImage_ = extension.empty() ? extension : extension.substr(1);
  pathToExportImage_ = path;
  unsaved_.exportConfirmed();
  exportWhenIdle(photo);
}

// A run may have begun under the panel: a drag that paused, a window that got another size.
void MainScreenViewController::exportWhenIdle(const PhotoFile& photo) {
  const auto& current = services_.photos.selectedImageFile;
  if (!current || current->filePath != photo.filePath) {
    // Meanwhile the user has left the photo, and was asked: nobody waits for a word about it.
    unsaved_.exportFailed({});
    return;
  }
  if (session_.runState().isRunningAlgorithm()) {
    services_.timers.after(this, "exportWhenIdle", kLookAgain,
                           [this, photo] { exportWhenIdle(photo); });
    return;
  }
  session_.isExportingPhoto = true;
  if (session_.lastExportedImage.isValid()) {
    exportFinished(photo, session_.lastExportedImage);
    session_.isExportingPhoto = false;
  } else {
    session_.seletedPhotoToBeFilteredIsChanged();
  }
}

void MainScreenViewController::exportFinished(const PhotoFile& photo, const Image& result) {
  unsaved_.exportRunFinished();
  saveDenoisedImageInDirectoryPath(pathToExportImage_, photo, result);
}

void MainScreenViewController::exportRunFailed() {
  perform(unsaved_.exportFailed(tr("The photo could not be processed.").toStdString()));
}

void MainScreenViewController::saveDenoisedImageInDirectoryPath(const std::string& path,
                                                                const PhotoFile& photo,
                                                                const Image& filteredImage) {
  ExportJob job;
  job.photo = photo;
  job.filteredImage = filteredImage;
  job.format =
      writerFor(formats_, exportChoice(formats_, fileTypeToExportImage_, photo.fileExtension));
  job.pathToExportImage = path;
  runExportJobInBackground(std::move(job), services_.globalQueue, services_.mainQueue,
                           [this, alive = std::weak_ptr(alive_)](const ExportOutcome& outcome) {
                             if (!alive.expired()) exportWritten(outcome);
                           });
}

void MainScreenViewController::exportWritten(const ExportOutcome& outcome) {
  if (!outcome.status) {
    perform(unsaved_.exportFailed(outcome.status.error()));
    return;
  }
  if (outcome.hasReplacedPhoto && services_.photos.selectedImageFile &&
      services_.photos.selectedImageFile->filePath == outcome.photo.filePath) {
    services_.photos.selectedImageFile = outcome.photo;
    services_.photos.selectedImageAsStored = {};
    services_.photos.arraySelectedImagesToProcess = {outcome.photo};
    // A run that started meanwhile has made it stale.
    if (session_.lastExportedImage.isValid()) session_.lastExportedImage = outcome.filteredImage;
  }
  perform(unsaved_.exportWritten());
}

void MainScreenViewController::offerRating() {
  if (!isInvitationOpen(services_.defaults, services_.bundle.CFBundleVersion)) return;
  session_.runState().showProgressBarCompleted();
  services_.timers.after(this, "showAlertForRateApp", Seconds(0.2),
                         [this] { showAlertForRateApp(); });
}

void MainScreenViewController::showAlertForRateApp() {
  hideProgressBar();
  if (!velmara::showAlertForRateApp(services_.defaults)) return;
  services_.showAppInFront();
  if (services_.alerts.runModal(rateInvitation()) != 0) return;
  if (services_.workspace.openURL(rateAddress(services_.bundle.bundleIdentifier), true)) {
    invitationAccepted(services_.defaults, services_.bundle.CFBundleVersion);
  }
}

void MainScreenViewController::openOrAsk(const std::string& path) {
  perform(unsaved_.open(path));
}

void MainScreenViewController::btnCloseWindowTapped() {
  perform(unsaved_.closeWindow(false));
}

void MainScreenViewController::btncloseFileFromMenuTapped() {
  perform(unsaved_.closeWindow(true));
}

bool MainScreenViewController::windowShouldClose() {
  const UnsavedActions actions = unsaved_.closeWindow(false);
  const bool isLeaving = std::ranges::any_of(actions, [](const UnsavedAction& action) {
    return action.kind == UnsavedAction::Kind::kTerminate ||
           action.kind == UnsavedAction::Kind::kTerminateApp;
  });
  // The end of the main window is the end of the application.
  if (!isLeaving) perform(actions);
  return isLeaving;
}

}  // namespace velmara
