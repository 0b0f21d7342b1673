#include "app/main_menu.h"

#include <QCoreApplication>
#include <QKeySequence>
#include <QMenu>
#include <QMenuBar>
#include <QPointer>

#include <functional>
#include <utility>
#include <vector>

#include "app/main_screen/main_screen_view_controller.h"
#include "app/recent_menu.h"
#include "app/sheets/about_sheet.h"
#include "app/sheets/shortcut_list.h"
#include "app/sheets/shortcuts_sheet.h"

namespace velmara {
namespace {

struct MenuText {
  Q_DECLARE_TR_FUNCTIONS(MainMenu)
};

QAction* addAction(QMenu& menu, const QString& title, const QList<QKeySequence>& keys,
                   std::function<void()> action) {
  QAction* item = menu.addAction(title);
  item->setShortcuts(keys);
  QObject::connect(item, &QAction::triggered, &menu, std::move(action));
  return item;
}

void addFileMenu(QMenuBar& bar, MainScreenViewController& screen, const ScreenServices& services) {
  QMenu& menu = *bar.addMenu(MenuText::tr("&File"));
  addAction(menu, MenuText::tr("&Open…"), {QKeySequence("Ctrl+O")}, services.openTapped);
  if (services.recentPhotos != nullptr) {
    addRecentMenu(menu, *services.recentPhotos,
                  [&session = services.session](const std::string& path) {
                    session.photoDraggedWithPath(path);
                  });
  }
  addAction(menu, MenuText::tr("&Batch Process…"), {QKeySequence("Ctrl+B")}, services.showBatch);
  addAction(menu, MenuText::tr("&Close"), {QKeySequence("Ctrl+W")}, services.closeTapped);
  menu.addSeparator();
  addAction(menu, MenuText::tr("&Save…"), {QKeySequence("Ctrl+S")}, services.saveTapped);
  addAction(menu, MenuText::tr("Save &As…"), {QKeySequence("Ctrl+Shift+S")}, services.saveAsTapped);
  addAction(menu, MenuText::tr("Show in &Folder"), {QKeySequence("Ctrl+Shift+F")},
            [&screen] { screen.showInFolder(); });
  menu.addSeparator();
  addAction(menu, MenuText::tr("&Quit"), {QKeySequence("Ctrl+Q")}, services.closeTapped);
}

void addEditMenu(QMenuBar& bar, MainScreenViewController& screen) {
  QMenu& menu = *bar.addMenu(MenuText::tr("&Edit"));
  addAction(menu, MenuText::tr("&Copy Result"), {QKeySequence("Ctrl+C")},
            [&screen] { screen.copyResult(); });
  addAction(menu, MenuText::tr("&Paste"), {QKeySequence("Ctrl+V")}, [&screen] { screen.paste(); });
}

void addViewMenu(QMenuBar& bar, MainScreenViewController& screen) {
  QMenu& menu = *bar.addMenu(MenuText::tr("&View"));
  const auto click = [&screen](Control control) {
    return [&screen, control] { screen.controls().click(control); };
  };
  addAction(menu, MenuText::tr("&Single"), {QKeySequence("1")}, click(Control::btnSingleMode));
  addAction(menu, MenuText::tr("S&plit"), {QKeySequence("2")}, click(Control::btnSplitMode));
  addAction(menu, MenuText::tr("&Dual"), {QKeySequence("3")}, click(Control::btnDualMode));
  addAction(menu, MenuText::tr("Removed &Noise"), {QKeySequence("4")},
            click(Control::btnNoiseMode));
  menu.addSeparator();
  addAction(menu, MenuText::tr("Zoom &In"), {QKeySequence("Ctrl++"), QKeySequence("Ctrl+=")},
            click(Control::btnZoomIn));
  addAction(menu, MenuText::tr("Zoom &Out"), {QKeySequence("Ctrl+-")}, click(Control::btnZoomOut));
  addAction(menu, MenuText::tr("&Fit To Screen"), {QKeySequence("Ctrl+0")},
            click(Control::btnFitScreen));
  addAction(menu, MenuText::tr("&Actual Size"), {QKeySequence("Ctrl+1")},
            click(Control::btn100Percent));
  addAction(menu, MenuText::tr("Dou&ble Size"), {QKeySequence("Ctrl+2")},
            click(Control::btn200Percent));
}

void addDenoiseMenu(QMenuBar& bar, MainScreenViewController& screen) {
  QMenu& menu = *bar.addMenu(MenuText::tr("&Denoise"));
  addAction(menu, MenuText::tr("&Auto Mode"), {QKeySequence("A")},
            [&screen] { screen.controls().click(Control::btnAutoMode); });
  addAction(menu, MenuText::tr("&Deep"), {QKeySequence("D")},
            [&screen] { screen.controls().click(Control::btnDeepMode); });
  addAction(menu, MenuText::tr("&Stronger"), {QKeySequence(Qt::Key_PageUp)},
            [&screen] { screen.changeLevel(1); });
  addAction(menu, MenuText::tr("&Weaker"), {QKeySequence(Qt::Key_PageDown)},
            [&screen] { screen.changeLevel(-1); });
  menu.addSeparator();
  addAction(menu, MenuText::tr("Sto&p"), {QKeySequence(Qt::Key_Escape)},
            [&screen] { screen.session().cancelRun(); });
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
  QMenu& menu = *bar.addMenu(MenuText::tr("&Help"));
  addAction(menu, MenuText::tr("Velmara &Help"), {QKeySequence("F1")}, services.showVMPHelp);
  addAction(menu, MenuText::tr("&Keyboard Shortcuts"), {},
            [&bar, sheet = QPointer<ShortcutsSheet>()]() mutable {
              if (sheet == nullptr) sheet = new ShortcutsSheet(allShortcuts(bar), bar.window());
              sheet->showShortcuts();
            });
  addAction(menu, MenuText::tr("&Tips"), {}, [&screen] { screen.showTipsScreen(); });
  addAction(menu, MenuText::tr("&Feedback…"), {}, services.showFeedback);
  menu.addSeparator();
  addAction(
      menu, MenuText::tr("&About Velmara"), {},
      [&bar, version = services.bundle.CFBundleVersion, sheet = QPointer<AboutSheet>()]() mutable {
        if (sheet == nullptr) sheet = new AboutSheet(version, bar.window());
        sheet->showAbout();
      });
}

}  // namespace

QMenuBar* makeMainMenu(MainScreenViewController& screen, const ScreenServices& services) {
  auto* bar = new QMenuBar;
  bar->setNativeMenuBar(false);
  addFileMenu(*bar, screen, services);
  addEditMenu(*bar, screen);
  addViewMenu(*bar, screen);
  addDenoiseMenu(*bar, screen);
  addHelpMenu(*bar, screen, services);
  return bar;
}

}  // namespace velmara
