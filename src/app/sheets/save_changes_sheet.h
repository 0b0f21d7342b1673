#pragma once

#include <QDialog>

#include <string>

class QLabel;
class QPushButton;

namespace velmara {

/// The question about unsaved work, on the main window: `windowSaveChanges` with its header
/// `lblSaveChangeHeader`. Return saves, Escape and closing cancel. Main thread.
class SaveChangesSheet : public QDialog {
  Q_OBJECT

 public:
  explicit SaveChangesSheet(QWidget* mainWindow);

  void showSheet(const std::string& header);
  /// Takes the sheet away without an answer.
  void closeSheet();

  void reject() override { Q_EMIT btnCancelChangesTapped(); }

 Q_SIGNALS:
  void btnSaveChangesTapped();
  void btnDontSaveChangesTapped();
  void btnCancelChangesTapped();

 private:
  QLabel* lblSaveChangeHeader_;
  QPushButton* btnSaveChanges_;
};

}  // namespace velmara
