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
  /// Not shown yet.
  explicit SaveChangesSheet(QWidget* mainWindow);
  ~SaveChangesSheet() override;

  /// Asks, under a header.
  void showSheet(const std::string& header);
  /// Takes the sheet away without an answer.
  void closeSheet();

  void reject() override { Q_EMIT btnCancelChangesTapped(); }

 Q_SIGNALS:
  /// The three answers.
  void btnSaveChangesTapped();
  void btnDontSaveChangesTapped();
  void btnCancelChangesTapped();

 private:
  std::unique_ptr<Ui::SaveChangesSheet> ui_;
};

}  // namespace velmara
