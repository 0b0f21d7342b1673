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

// The first of the folders that is there.
QString startFolder(const QStringList& folders) {
  for (const QString& folder : folders) {
    if (!folder.isEmpty() && QDir(folder).exists()) return folder;
  }
  return QDir::homePath();
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
  dialog->setDirectory(startFolder(
      {*openFolder_, QStandardPaths::writableLocation(QStandardPaths::PicturesLocation)}));
  QObject::connect(dialog, &QDialog::finished, dialog,
                   [folder = openFolder_, dialog, completion = std::move(completion)](int result) {
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
  dialog->setDirectory(startFolder({*saveFolder_, QFile::decodeName(options.directory.c_str())}));
  QObject::connect(dialog, &QDialog::finished, dialog,
                   [folder = saveFolder_, dialog, completion = std::move(completion)](int result) {
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
