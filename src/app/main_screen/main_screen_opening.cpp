// How a photo gets into the session: the open panel, a drop, the start-up.
#include <algorithm>
#include <utility>

#include "app/main_screen/main_screen_view_controller.h"
#include "imaging/file_format.h"
#include "imaging/image_reader.h"
#include "imaging/utils.h"
#include "platform/dispatch.h"
#include "platform/trash.h"
#include "preview/shown_photo.h"
#include "session/bookmarks.h"
#include "ui_MainScreenViewController.h"

namespace velmara {
void MainScreenViewController::btnAddPhotoTapped() {
  OpenPanelOptions options;
  options.title = tr("Open Image").toStdString();
  options.allowedTypesTitle = tr("Images").toStdString();
  options.allowedFileTypes = readableFileTypes();
  services_.panels.beginOpenPanel(options, [this](const std::vector<std::string>& paths) {
    ui_->btnAddPhoto->setState(0);
    if (paths.empty()) return;
    if (isInTrash(paths.front(), trashPlacesFor(paths.front()))) {
      services_.alerts.runModal({tr("Can't Process").toStdString(), {}, {tr("OK").toStdString()}});
      return;
    }
    openOrAsk(paths.back());
  });
}

void MainScreenViewController::photoDraggedWithPath(const std::string& path) {
  openOrAsk(path);
}

void MainScreenViewController::updateSelectedImageToBeFilteredWithPath(const std::string& path) {
  services_.log("updateSelectedImageToBeFilteredWithPath:");
  const PhotoFile photo = PhotoFile::initWithFileUrl(path);
  if (photo.width < 1 || photo.height < 1 || !isReadableFileType(photo.fileExtension)) {
    services_.alerts.runModal(
        {tr("File Format Not Suppored").toStdString(), {}, {tr("OK").toStdString()}});
    session_.runState().disableActionsInRunningMode();
    return;
  }
  if (const auto& region = services_.photos.selectedImageFileToProccessing) {
    Utils::sharedUtils().deleteFileAtPath(region->filePath);
  }
  setSliderCustomDenoise(1.0);
  services_.photos.arraySelectedImagesToProcess = {photo};
  services_.photos.selectedImageFile = photo;
  services_.photos.selectedImageFileToProccessing.reset();
  session_.photoBecameCurrent();
  session_.lastExportedImage = {};
  saveBookmarkPathsFromTableView();
  preview_->resetState();
  for (ActionButton* button : {ui_->btnZoomIn, ui_->btnZoomOut}) button->setState(0);
  ui_->vwPreviewContainer->show();
  ui_->vwDragging->hide();
  loadPhotoForShowing(photo);
}

// Decoding a large photo takes its time, so it is not done on this thread; what is opened meanwhile
// overtakes it.
void MainScreenViewController::loadPhotoForShowing(const PhotoFile& photo) {
  services_.globalQueue.async([this, alive = std::weak_ptr(alive_), photo,
                               token = loading_.advance(), mainQueue = &services_.mainQueue] {
    const ShownPhoto shown = loadShownPhoto(photo);
    dispatchSync(*mainQueue, [&] {
      if (alive.expired() || !loading_.isCurrent(token)) return;
      photoWasLoaded(photo, shown);
    });
  });
}

void MainScreenViewController::photoWasLoaded(const PhotoFile& photo, const ShownPhoto& shown) {
  if (!shown.picture.isValid()) {
    // The headers were those of a picture, but the rest was not.
    services_.photos.arraySelectedImagesToProcess.clear();
    services_.photos.selectedImageFile.reset();
    initialSetupView();
    setupAdjustParamView();
    services_.alerts.runModal(
        {tr("File Format Not Suppored").toStdString(), photo.filePath, {tr("OK").toStdString()}});
    return;
  }
  services_.photos.selectedImageAsStored = shown.asStored;
  preview_->setInputOriginalImage(shown.picture, shown.profile);
  // Arrow keys and the space bar are about the picture now.
  ui_->vwPreviewContainer->setFocus();
  preview_->configurePreviewForSelectedStyle(PreviewStyle::kDual);
}

Image MainScreenViewController::loadTestImage() const {
  auto image = readImage(services_.bundle.pathForResource("noisy.png"));
  return image ? std::move(image).value() : Image();
}

void MainScreenViewController::saveBookmarkPathsFromTableView() {
  velmara::saveBookmarkPathsFromTableView(services_.photos.arraySelectedImagesToProcess,
                                          services_.defaults);
}

void MainScreenViewController::loadLastWorkedImageFromDefaults() {
  if (session_.hasPhoto()) return;  // Somebody was quicker than the delay.
  const auto last = velmara::loadLastWorkedImageFromDefaults(
      services_.photos.arraySelectedImagesToProcess, services_.defaults,
      [](const std::string& path) { return isInTrash(path, trashPlacesFor(path)); });
  if (last) updateSelectedImageToBeFilteredWithPath(*last);
}

}  // namespace velmara
