#pragma once

#include <QDialog>

#include <memory>
#include <vector>

#include "app/sheets/shortcut_list.h"

class QGridLayout;

namespace Ui {
class ShortcutsSheet;
}

namespace velmara {

/// The shortcuts at a glance: a sheet on the main window with two columns of groups, each line an
/// action and its keys. Return, Escape and its button close it. Main thread.
class ShortcutsSheet : public QDialog {
  Q_OBJECT

 public:
  /// Not shown yet.
  ShortcutsSheet(const std::vector<ShortcutGroup>& groups, QWidget* mainWindow);
  ~ShortcutsSheet() override;

  /// Shows the sheet, or brings it to the front if it is open.
  void showShortcuts();

 private:
  void addGroup(QGridLayout& column, const ShortcutGroup& group);
  QWidget* keyCaps(const QStringList& keys);

  std::unique_ptr<Ui::ShortcutsSheet> ui_;
};

}  // namespace velmara
