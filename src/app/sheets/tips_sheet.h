#pragma once

#include <QDialog>

#include <vector>

#include "app/sheets/page_controller.h"
#include "app/sheets/tips.h"

class QLabel;
class QPushButton;

namespace velmara {

class PageDots;
class TipPicture;

/// The tips: a sheet on the main window that pages through pictures of how the program is used.
/// Arrow keys, Page Up, Page Down, Home and End page as the buttons and the dots do; Escape closes,
/// and so does the last page's button. Main thread.
class TipsSheet : public QDialog {
  Q_OBJECT

 public:
  explicit TipsSheet(QWidget* mainWindow);

  /// Shows the sheet from its first page.
  void showTipsScreen();

  void btnBackPageTapped();
  /// Does nothing on the last page.
  void btnNextpageTapped();

  int selectedIndex() const { return pages_.selectedIndex(); }

 private:
  void addShortcuts();
  void selectPage(int index);
  void showPage();

  std::vector<Tip> tips_;
  PageController pages_;
  TipPicture* imgTip_;
  QLabel* lblTipTitle_;
  QLabel* lblTipText_;
  PageDots* pageDots_;
  QPushButton* btnBackPage_;
  QPushButton* btnNextpage_;
};

}  // namespace velmara
