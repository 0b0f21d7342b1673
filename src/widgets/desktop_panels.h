#pragma once

#include <QFileDialog>
#include <QPointer>
#include <QString>
#include <QWidget>

#include <memory>
#include <string>
#include <vector>

#include "platform/panels.h"

namespace velmara {

/// A save dialog whose file names always carry one of the allowed extensions.
class SaveDialog : public QFileDialog {
  Q_OBJECT

 public:
  SaveDialog(const SavePanelOptions& options, QWidget* parent);
  ~SaveDialog() override;

  void setAllowedFileTypes(std::vector<std::string> types);

  /// The chosen path in the system's own bytes.
  std::string path() const;

  /// Gives the accessory view back to its owner.
  void releaseAccessoryView();

 protected:
  void accept() override;

 private:
  QString name() const;
  void setName(const QString& name);

  std::vector<std::string> types_;
  QPointer<QWidget> accessory_;
};

/// Shows the toolkit's own file dialogs on the main window. Opening and saving each remember the
/// folder they were last left in. A panel whose window is deleted is not answered any more.
class DesktopPanels final : public Panels {
 public:
  explicit DesktopPanels(QWidget* mainWindow = nullptr) : mainWindow_(mainWindow) {}

  void setMainWindow(QWidget* mainWindow) { mainWindow_ = mainWindow; }

  void beginOpenPanel(const OpenPanelOptions& options, OpenCompletion completion) override;
  std::shared_ptr<SavePanel> beginSavePanel(const SavePanelOptions& options,
                                            SaveCompletion completion) override;

 private:
  QPointer<QWidget> mainWindow_;
  // Shared with the dialogs, which may outlive this object.
  std::shared_ptr<QString> openFolder_ = std::make_shared<QString>();
  std::shared_ptr<QString> saveFolder_ = std::make_shared<QString>();
};

}  // namespace velmara
