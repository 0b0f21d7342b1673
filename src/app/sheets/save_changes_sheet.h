#pragma once

#include <QDialog>

#include <memory>
#include <string>

namespace Ui {
class SaveChangesSheet;
}

namespace velmara {

/// The question about unsaved work, on the main window: `windowSaveChanges` with its header
/// `lblSaveChangeHeader`. Return saves, Escape and closing cancel. Main thread.
class SaveChangesSheet : public QDialog {
  Q_OBJECT

 public:
  explicit SaveChangesSheet(QWidget* mainWindow);
  ~SaveChangesSheet() override;

  void showSheet(const std::string& header);
  /// Takes the sheet away without an answer.
  void closeSheet();

  void reject() override { Q_EMIT btnCancelChangesTapped(); }

 Q_SIGNALS:
  void btnSaveChangesTapped();
  void btnDontSaveChangesTapped();
  void btnCancelChangesTapped();

 private:
  std::unique_ptr<Ui::SaveChangesSheet> ui_;
};

}  // namespace velmara
