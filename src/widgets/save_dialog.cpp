#include "widgets/save_dialog.h"

#include <QFile>
#include <QFileInfo>
#include <QGridLayout>
#include <QLineEdit>

#include <utility>

namespace velmara {

SaveDialog::SaveDialog(const SavePanelOptions& options, QWidget* parent) : QFileDialog(parent) {
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

SaveDialog::~SaveDialog() {
  releaseAccessoryView();
}

QString SaveDialog::name() const {
  const auto* field = findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
  return field != nullptr ? field->text() : QString();
}

void SaveDialog::setName(const QString& name) {
  if (auto* field = findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))) field->setText(name);
}

void SaveDialog::setAllowedFileTypes(std::vector<std::string> types) {
  setName(QString::fromStdString(withChangedFileType(name().toStdString(), types_, types)));
  types_ = std::move(types);
}

std::string SaveDialog::path() const {
  const QStringList files = selectedFiles();
  return files.isEmpty() ? std::string() : QFile::encodeName(files.first()).toStdString();
}

void SaveDialog::releaseAccessoryView() {
  if (accessory_ == nullptr) return;
  layout()->removeWidget(accessory_);
  accessory_->hide();
  accessory_->setParent(nullptr);
  accessory_ = nullptr;
}

void SaveDialog::accept() {
  // Before the base class looks whether the file is there already. The name of a folder enters it.
  const QString typed = name();
  if (!typed.isEmpty() && !QFileInfo(directory(), typed).isDir()) {
    setName(QString::fromStdString(withAllowedFileType(typed.toStdString(), types_)));
  }
  QFileDialog::accept();
}

}  // namespace velmara
