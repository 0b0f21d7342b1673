#pragma once

#include <QFileDialog>
#include <QPointer>

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

}  // namespace velmara
