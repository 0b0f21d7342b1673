#pragma once

#include <QDialog>

#include <memory>
#include <string>

namespace Ui {
class AboutSheet;
}

namespace velmara {

/// What the program is, whose, and what it is built with: a sheet on the main window. Return,
/// Escape and its button close it; another copies the versions. Main thread.
class AboutSheet : public QDialog {
  Q_OBJECT

 public:
  /// Not shown yet. The version is the program's.
  AboutSheet(std::string version, QWidget* mainWindow);
  ~AboutSheet() override;

  /// Shows the sheet, or brings it to the front if it is open.
  void showAbout();

 private:
  void listLibraries();

  std::unique_ptr<Ui::AboutSheet> ui_;
  std::string version_;
};

}  // namespace velmara
