#include "widgets/desktop_workspace.h"

#include <QDesktopServices>
#include <QProcess>
#include <QProcessEnvironment>
#include <QStandardPaths>
#include <QUrl>
#include <QWidget>

namespace velmara {
namespace {

// Without an activation token, the window manager's focus-stealing prevention keeps ours in front.
bool openWithoutActivation(const QUrl& url) {
  const QString opener = QStandardPaths::findExecutable(QStringLiteral("xdg-open"));
  if (opener.isEmpty()) return false;
  QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
  environment.remove(QStringLiteral("DESKTOP_STARTUP_ID"));
  environment.remove(QStringLiteral("XDG_ACTIVATION_TOKEN"));
  QProcess process;
  process.setProgram(opener);
  process.setArguments({url.toString(QUrl::FullyEncoded)});
  process.setProcessEnvironment(environment);
  return process.startDetached();
}

}  // namespace

bool DesktopWorkspace::openURL(const std::string& url, bool activates) {
  const QUrl parsed(QString::fromStdString(url), QUrl::StrictMode);
  if (!parsed.isValid() || parsed.scheme().isEmpty()) return false;
  return activates ? QDesktopServices::openUrl(parsed) : openWithoutActivation(parsed);
}

void DesktopWorkspace::showInFront(QObject& window) {
  auto* widget = qobject_cast<QWidget*>(&window);
  if (widget == nullptr) return;
  widget->setWindowState(widget->windowState() & ~Qt::WindowMinimized);
  widget->show();
  widget->raise();
  widget->activateWindow();
}

}  // namespace velmara
