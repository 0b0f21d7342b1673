#include "widgets/desktop_workspace.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDesktopServices>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QProcessEnvironment>
#include <QStandardPaths>
#include <QUrl>
#include <QWidget>

namespace velmara {
namespace {

// Until a file manager that has to be started first has answered, in milliseconds.
constexpr int kFileManagerTimeout = 5000;

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

void openFolderOf(const QString& file) {
  QDesktopServices::openUrl(QUrl::fromLocalFile(QFileInfo(file).absolutePath()));
}

}  // namespace

bool DesktopWorkspace::openURL(const std::string& url, bool activates) {
  const QUrl parsed(QString::fromStdString(url), QUrl::StrictMode);
  if (!parsed.isValid() || parsed.scheme().isEmpty()) return false;
  return activates ? QDesktopServices::openUrl(parsed) : openWithoutActivation(parsed);
}

// By the file manager's own interface (freedesktop.org, "File Manager D-Bus interface"), which can
// choose the file.
void DesktopWorkspace::showInFolder(const std::string& path) {
  const QString name = QFile::decodeName(path.c_str());
  const QDBusConnection bus = QDBusConnection::sessionBus();
  // A call without a bus would never be answered, not even by an error.
  if (!bus.isConnected()) return openFolderOf(name);
  const QString manager = QStringLiteral("org.freedesktop.FileManager1");
  QDBusMessage call =
      QDBusMessage::createMethodCall(manager, QStringLiteral("/org/freedesktop/FileManager1"),
                                     manager, QStringLiteral("ShowItems"));
  call << QStringList{QUrl::fromLocalFile(name).toString(QUrl::FullyEncoded)} << QString();
  auto* answer = new QDBusPendingCallWatcher(bus.asyncCall(call, kFileManagerTimeout));
  QObject::connect(answer, &QDBusPendingCallWatcher::finished, answer, [answer, name] {
    answer->deleteLater();
    if (answer->isError()) openFolderOf(name);
  });
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
