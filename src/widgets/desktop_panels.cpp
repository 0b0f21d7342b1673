#include "widgets/desktop_panels.h"

#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QStandardPaths>

#include <utility>

#include "widgets/save_dialog.h"

namespace velmara {
namespace {

class DialogSavePanel final : public SavePanel {
 public:
  explicit DialogSavePanel(SaveDialog* dialog) : dialog_(dialog) {}

  void setAllowedFileTypes(std::vector<std::string> types) override {
    if (isShown()) dialog_->setAllowedFileTypes(std::move(types));
  }
  void cancel() override {
    if (isShown()) dialog_->reject();
  }

 private:
  // A dialog that was answered lives on until the event loop deletes it.
  bool isShown() const { return dialog_ && dialog_->isVisible(); }

  QPointer<SaveDialog> dialog_;
};

QString nameFilter(const OpenPanelOptions& options) {
  QStringList patterns;
  for (const std::string& type : options.allowedFileTypes) {
    patterns.append(QStringLiteral("*.") + QString::fromStdString(type));
  }
  return QStringLiteral("%1 (%2)").arg(QString::fromStdString(options.allowedTypesTitle),
                                       patterns.join(QLatin1Char(' ')));
}

QString startFolder(const QString& remembered) {
  if (!remembered.isEmpty() && QDir(remembered).exists()) return remembered;
  const QString pictures = QStandardPaths::writableLocation(QStandardPaths::PicturesLocation);
  return QDir(pictures).exists() ? pictures : QDir::homePath();
}

}  // namespace

void DesktopPanels::beginOpenPanel(const OpenPanelOptions& options, OpenCompletion completion) {
  auto* dialog = new QFileDialog(mainWindow_, QString::fromStdString(options.title));
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  dialog->setOption(QFileDialog::DontUseNativeDialog);
  dialog->setOption(QFileDialog::ReadOnly, !options.canCreateDirectories);
  dialog->setAcceptMode(QFileDialog::AcceptOpen);
  if (!options.canChooseFiles) {
    dialog->setFileMode(QFileDialog::Directory);
  } else {
    dialog->setFileMode(options.allowsMultipleSelection ? QFileDialog::ExistingFiles
                                                        : QFileDialog::ExistingFile);
    if (!options.allowedFileTypes.empty()) dialog->setNameFilter(nameFilter(options));
  }
  dialog->setDirectory(startFolder(*folder_));
  QObject::connect(dialog, &QDialog::finished, dialog,
                   [folder = folder_, dialog, completion = std::move(completion)](int result) {
                     std::vector<std::string> paths;
                     if (result == QDialog::Accepted) {
                       *folder = dialog->directory().absolutePath();
                       for (const QString& file : dialog->selectedFiles()) {
                         paths.push_back(QFile::encodeName(file).toStdString());
                       }
                     }
                     completion(paths);
                   });
  dialog->open();
}

std::shared_ptr<SavePanel> DesktopPanels::beginSavePanel(const SavePanelOptions& options,
                                                         SaveCompletion completion) {
  auto* dialog = new SaveDialog(options, mainWindow_);
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  dialog->setDirectory(startFolder(*folder_));
  QObject::connect(dialog, &QDialog::finished, dialog,
                   [folder = folder_, dialog, completion = std::move(completion)](int result) {
                     std::string path;
                     if (result == QDialog::Accepted) {
                       *folder = dialog->directory().absolutePath();
                       path = dialog->path();
                     }
                     dialog->releaseAccessoryView();
                     completion(path);
                   });
  dialog->open();
  return std::make_shared<DialogSavePanel>(dialog);
}

}  // namespace velmara
