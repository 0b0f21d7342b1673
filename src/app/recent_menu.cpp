#include "app/recent_menu.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QMenu>

#include <utility>

#include "platform/log.h"
#include "session/recent_photos.h"

namespace velmara {
namespace {

struct RecentText {
  Q_DECLARE_TR_FUNCTIONS(RecentMenu)
};

constexpr int kWidestFolder = 320;  // Pixels: the menu stays beside the window.

void fill(QMenu& menu, const RecentPhotos& recent,
          const std::function<void(const std::string&)>& open) {
  menu.clear();
  const QFontMetrics metrics = menu.fontMetrics();
  for (const std::string& path : recent.paths()) {
    const QFileInfo file(QFile::decodeName(path.c_str()));
    if (!file.isFile()) continue;
    const QString folder = metrics.elidedText(file.absolutePath(), Qt::ElideMiddle, kWidestFolder);
    QString text = RecentText::tr("%1 in %2").arg(file.fileName(), folder);
    // What follows an ampersand would be underlined.
    QAction* item = menu.addAction(text.replace('&', "&&"));
    QObject::connect(item, &QAction::triggered, &menu, [open, path] { open(path); });
  }
  menu.setEnabled(!menu.isEmpty());
  if (menu.isEmpty()) return;
  menu.addSeparator();
  QObject::connect(menu.addAction(RecentText::tr("&Clear List")), &QAction::triggered, &menu,
                   [&recent] {
                     const Status cleared = recent.clear();
                     if (!cleared) logLine("recent photos: " + cleared.error());
                   });
}

}  // namespace

void addRecentMenu(QMenu& parent, const RecentPhotos& recent,
                   std::function<void(const std::string&)> open) {
  QMenu* menu = parent.addMenu(RecentText::tr("Open &Recent"));
  const auto refill = [menu, &recent, open = std::move(open)] { fill(*menu, recent, open); };
  QObject::connect(&parent, &QMenu::aboutToShow, menu, refill);
  refill();
}

}  // namespace velmara
