// What opens over the screen: the panels, the question about unsaved work, the tips, what was
// saved.
#include <QClipboard>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QMimeData>

#include "app/clipboard/pasted_picture.h"
#include "app/main_screen/main_screen_view_controller.h"
#include "app/sheets/export_options_view.h"
#include "app/sheets/save_changes_sheet.h"
#include "app/sheets/tips_sheet.h"
#include "imaging/file_format.h"
#include "platform/workspace.h"
#include "session/questions.h"
#include "ui_MainScreenViewController.h"

namespace velmara {
namespace {

constexpr Seconds kSavedNotice(6.0);
constexpr const char* kHideSaved = "hideSaved";

}  // namespace

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
    session().photoDraggedWithPath(paths.back());
  });
}

void MainScreenViewController::showSaveChangesSheet(const std::string& header) {
  if (windowSaveChanges_ == nullptr) {
    windowSaveChanges_ = new SaveChangesSheet(window());
    connect(windowSaveChanges_, &SaveChangesSheet::btnSaveChangesTapped, &session(),
            &EditingSession::btnSaveChangesTapped);
    connect(windowSaveChanges_, &SaveChangesSheet::btnDontSaveChangesTapped, &session(),
            &EditingSession::btnDontSaveChangesTapped);
    connect(windowSaveChanges_, &SaveChangesSheet::btnCancelChangesTapped, &session(),
            &EditingSession::btnCancelChangesTapped);
  }
  windowSaveChanges_->showSheet(header);
}

void MainScreenViewController::showSavePanel() {
  const ExportFormats& formats = session().exportFormats();
  viewExportOptions_ = std::make_unique<ExportOptionsView>();
  viewExportOptions_->setTitles(formats.titles);
  viewExportOptions_->setQualityShown(titleHasQuality(formats.titles.front()));
  connect(viewExportOptions_.get(), &ExportOptionsView::selectFormat, this,
          &MainScreenViewController::selectFormat);
  SavePanelOptions options = session().savePanelOptions();
  options.accessoryView = viewExportOptions_.get();
  savePanel_ = services_.panels.beginSavePanel(
      options, [this](const std::string& path) { session().savePanelAnswered(path); });
}

void MainScreenViewController::selectFormat(int index) {
  const auto allowed = allowedTypesAt(session().exportFormats(), static_cast<std::size_t>(index));
  if (allowed.empty()) return;
  viewExportOptions_->setQualityShown(formatHasQuality(allowed.front()));
  if (savePanel_ != nullptr) savePanel_->setAllowedFileTypes(allowed);
}

void MainScreenViewController::showSaved(const std::string& path) {
  const QFileInfo file(QFile::decodeName(path.c_str()));
  pathToShow_ = QFile::encodeName(file.absoluteFilePath()).toStdString();
  showNotice(QString::fromStdString(savedLabel(path)),
             tr("Show %1").arg(QDir::toNativeSeparators(file.absolutePath())));
}

// Only what can be shown in a folder is to be clicked.
void MainScreenViewController::showNotice(const QString& text, const QString& toolTip) {
  ui_->btnSaved->setText(text);
  ui_->btnSaved->setToolTip(toolTip);
  ui_->btnSaved->setEnabled(!toolTip.isEmpty());
  ui_->btnSaved->show();
  services_.timers.cancel(this, kHideSaved);
  services_.timers.after(this, kHideSaved, kSavedNotice, [this] { hideSaved(); });
}

void MainScreenViewController::copyResult() {
  const bool isStarted = session().encodeResult([this](const PhotoJobResult& result) {
    if (result.end != PhotoJobResult::End::finished) {
      hideSaved();
      services_.alerts.runModal({tr("The result could not be copied.").toStdString(),
                                 result.reason,
                                 {tr("OK").toStdString()}});
      return;
    }
    auto* content = new QMimeData;
    content->setData(QStringLiteral("image/png"),
                     QByteArray(reinterpret_cast<const char*>(result.encoded.data()),
                                static_cast<qsizetype>(result.encoded.size())));
    QGuiApplication::clipboard()->setMimeData(content);
    showNotice(tr("Copied"), {});
  });
  if (isStarted) showNotice(tr("Copying…"), {});
}

void MainScreenViewController::paste() {
  const QMimeData* content = QGuiApplication::clipboard()->mimeData();
  if (content == nullptr) return;
  const auto picture = pastedPicture(*content, services_.temporaryDirectory);
  if (picture) {
    session().photoDraggedWithPath(*picture);
  } else {
    services_.alerts.runModal(
        {tr("Nothing was pasted.").toStdString(), picture.error(), {tr("OK").toStdString()}});
  }
}

void MainScreenViewController::showInFolder() {
  if (!pathToShow_.empty()) services_.workspace.showInFolder(pathToShow_);
}

void MainScreenViewController::hideSaved() {
  services_.timers.cancel(this, kHideSaved);
  ui_->btnSaved->hide();
}

void MainScreenViewController::showTipsScreen() {
  if (windowTips_ == nullptr) windowTips_ = new TipsSheet(window());
  windowTips_->showTipsScreen();
}

void MainScreenViewController::handleSubmitFeedBack() {
  services_.alerts.runModal(
      {tr("Thank you for providing us the feedback.").toStdString(), {}, {tr("OK").toStdString()}});
}

}  // namespace velmara
