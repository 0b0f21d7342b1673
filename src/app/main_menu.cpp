#include "app/main_menu.h"

#include <QCoreApplication>
#include <QKeySequence>
#include <QMenu>
#include <QMenuBar>
#include <QPointer>

#include <functional>
#include <string_view>
#include <utility>
#include <vector>

#include "app/main_screen/main_screen_view_controller.h"
#include "app/sheets/shortcut_list.h"
#include "app/sheets/shortcuts_sheet.h"

namespace velmara {
namespace {

QString text(const char* source) {
  return QCoreApplication::translate("MainMenu", source);
}

QAction* addAction(QMenu& menu, const QString& title, const QList<QKeySequence>& keys,
                   std::function<void()> action) {
  QAction* item = menu.addAction(title);
  item->setShortcuts(keys);
  QObject::connect(item, &QAction::triggered, &menu, std::move(action));
  return item;
}

void addFileMenu(QMenuBar& bar, NotificationCenter& center) {
  QMenu& menu = *bar.addMenu(text("&File"));
  const auto post = [&center](std::string_view name) {
    return [&center, name] { center.post(name); };
  };
  addAction(menu, text("&Open…"), {QKeySequence("Ctrl+O")},
            post(notifications::kOpenPhotoFromMenuTapped));
  addAction(menu, text("&Close"), {QKeySequence("Ctrl+W")},
            post(notifications::kClosePhotoFromMenuTapped));
  menu.addSeparator();
  addAction(menu, text("&Save…"), {QKeySequence("Ctrl+S")},
            post(notifications::kSavePhotoFromMenuTapped));
  addAction(menu, text("Save &As…"), {QKeySequence("Ctrl+Shift+S")},
            post(notifications::kSavePhotoFromMenuTapped));
  menu.addSeparator();
  addAction(menu, text("&Quit"), {QKeySequence("Ctrl+Q")},
            post(notifications::kClosePhotoFromMenuTapped));
}

void addViewMenu(QMenuBar& bar, MainScreenViewController& screen) {
  QMenu& menu = *bar.addMenu(text("&View"));
  const auto click = [&screen](Control control) {
    return [&screen, control] { screen.controls().click(control); };
  };
  addAction(menu, text("&Single"), {QKeySequence("1")}, click(Control::btnSingleMode));
  addAction(menu, text("S&plit"), {QKeySequence("2")}, click(Control::btnSplitMode));
  addAction(menu, text("&Dual"), {QKeySequence("3")}, click(Control::btnDualMode));
  menu.addSeparator();
  addAction(menu, text("Zoom &In"), {QKeySequence("Ctrl++"), QKeySequence("Ctrl+=")},
            click(Control::btnZoomIn));
  addAction(menu, text("Zoom &Out"), {QKeySequence("Ctrl+-")}, click(Control::btnZoomOut));
  addAction(menu, text("&Fit To Screen"), {QKeySequence("Ctrl+0")}, click(Control::btnFitScreen));
  addAction(menu, text("&Actual Size"), {QKeySequence("Ctrl+1")}, click(Control::btn100Percent));
  addAction(menu, text("Dou&ble Size"), {QKeySequence("Ctrl+2")}, click(Control::btn200Percent));
}

void addDenoiseMenu(QMenuBar& bar, MainScreenViewController& screen) {
  QMenu& menu = *bar.addMenu(text("&Denoise"));
  addAction(menu, text("&Auto Mode"), {QKeySequence("A")},
            [&screen] { screen.controls().click(Control::btnAutoMode); });
  addAction(menu, text("&Stronger"), {QKeySequence(Qt::Key_PageUp)},
            [&screen] { screen.changeLevel(1); });
  addAction(menu, text("&Weaker"), {QKeySequence(Qt::Key_PageDown)},
            [&screen] { screen.changeLevel(-1); });
}

std::vector<MenuCommand> commandsOf(const QMenuBar& bar) {
  std::vector<MenuCommand> commands;
  for (const QAction* title : bar.actions()) {
    if (title->menu() == nullptr) continue;
    for (const QAction* item : title->menu()->actions()) {
      commands.push_back({title->text(), item->text(), item->shortcuts()});
    }
  }
  return commands;
}

std::vector<ShortcutGroup> allShortcuts(const QMenuBar& bar) {
  std::vector<ShortcutGroup> groups = menuShortcuts(commandsOf(bar));
  groups.push_back(pictureShortcuts());
  return groups;
}

void addHelpMenu(QMenuBar& bar, MainScreenViewController& screen, const ScreenServices& services) {
  QMenu& menu = *bar.addMenu(text("&Help"));
  addAction(menu, text("Velmara &Help"), {QKeySequence("F1")}, services.showVMPHelp);
  addAction(menu, text("&Keyboard Shortcuts"), {},
            [&bar, sheet = QPointer<ShortcutsSheet>()]() mutable {
              if (sheet == nullptr) sheet = new ShortcutsSheet(allShortcuts(bar), bar.window());
              sheet->showShortcuts();
            });
  addAction(menu, text("&Tips"), {}, [&screen] { screen.showTipsScreen(); });
  addAction(menu, text("&Feedback…"), {}, services.showFeedback);
}

}  // namespace

QMenuBar* makeMainMenu(MainScreenViewController& screen, const ScreenServices& services) {
  auto* bar = new QMenuBar;
  bar->setNativeMenuBar(false);
  addFileMenu(*bar, services.center);
  addViewMenu(*bar, screen);
  addDenoiseMenu(*bar, screen);
  addHelpMenu(*bar, screen, services);
  return bar;
}

}  // namespace velmara
