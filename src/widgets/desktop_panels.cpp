#include "widgets/desktop_panels.h"

#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QGridLayout>
#include <QLineEdit>
#include <QStandardPaths>

#include <string>
#include <utility>
#include <vector>

#include "widgets/desktop_alerts.h"

namespace velmara {
namespace {

// A save dialog whose file names always carry one of the allowed extensions.
class SaveDialog final : public QFileDialog {
 public:
  SaveDialog(const SavePanelOptions& options, QWidget* parent) : QFileDialog(parent) {
    setOption(DontUseNativeDialog);  // The desktop's own has no place for an accessory view.
    setAcceptMode(AcceptSave);
    setFileMode(AnyFile);
    setWindowTitle(QString::fromStdString(options.title));
    setOption(ReadOnly, !options.canCreateDirectories);
    types_ = options.allowedFileTypes;
    setName(QString::fromStdString(withAllowedFileType(options.nameFieldStringValue, types_)));

    // The extension says the type; a second choice of types would only be in the way.
    for (const char* part : {"fileTypeLabel", "fileTypeCombo"}) {
      if (auto* widget = findChild<QWidget*>(QLatin1String(part))) widget->hide();
    }

    accessory_ = qobject_cast<QWidget*>(options.accessoryView);
    auto* grid = qobject_cast<QGridLayout*>(layout());
    if (accessory_ != nullptr && grid != nullptr) {
      grid->addWidget(accessory_, grid->rowCount(), 0, 1, -1);
      accessory_->show();
    }
  }
  ~SaveDialog() override { releaseAccessoryView(); }

  void setAllowedFileTypes(std::vector<std::string> types) {
    setName(QString::fromStdString(withChangedFileType(name().toStdString(), types_, types)));
    types_ = std::move(types);
  }

  // The chosen path in the system's own bytes.
  std::string path() const {
    const QStringList files = selectedFiles();
    return files.isEmpty() ? std::string() : QFile::encodeName(files.first()).toStdString();
  }

  // Gives the accessory view back to its owner.
  void releaseAccessoryView() {
    if (accessory_ == nullptr) return;
    layout()->removeWidget(accessory_);
    accessory_->hide();
    accessory_->setParent(nullptr);
    accessory_ = nullptr;
  }

 protected:
  void accept() override {
    // Before the base class looks whether the file is there already. The name of a folder enters
    // it.
    const QString typed = name();
    if (!typed.isEmpty() && !QFileInfo(directory(), typed).isDir()) {
      setName(QString::fromStdString(withAllowedFileType(typed.toStdString(), types_)));
    }
    QFileDialog::accept();
  }

 private:
  QString name() const {
    const auto* field = findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
    return field != nullptr ? field->text() : QString();
  }

  void setName(const QString& name) {
    if (auto* field = findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))) field->setText(name);
  }

  std::vector<std::string> types_;
  QPointer<QWidget> accessory_;
};

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
  auto* dialog = new QFileDialog(windowInFront(mainWindow_), QString::fromStdString(options.title));
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
  auto* dialog = new SaveDialog(options, windowInFront(mainWindow_));
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
