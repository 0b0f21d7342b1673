#pragma once

#include <QDialog>

#include <memory>
#include <vector>

#include "app/sheets/page_controller.h"
#include "app/sheets/tips.h"

namespace Ui {
class TipsSheet;
}

namespace velmara {

/// The tips: a sheet on the main window that pages through pictures of how the program is used.
/// Arrow keys, Page Up, Page Down, Home and End page as the buttons and the dots do; Escape closes,
/// and so does the last page's button. Main thread.
class TipsSheet : public QDialog {
  Q_OBJECT

 public:
  /// Not shown yet.
  explicit TipsSheet(QWidget* mainWindow);
  ~TipsSheet() override;

  /// Shows the sheet from its first page.
  void showTipsScreen();

  /// Does nothing on the first page.
  void btnBackPageTapped();
  /// Does nothing on the last page.
  void btnNextpageTapped();

  /// Of the page that is shown, from 0.
  int selectedIndex() const { return pages_.selectedIndex(); }

 private:
  void addShortcuts();
  void selectPage(int index);
  void showPage();

  std::unique_ptr<Ui::TipsSheet> ui_;
  std::vector<Tip> tips_;
  PageController pages_;
};

}  // namespace velmara
