#include "widgets/desktop_alerts.h"

#include <QApplication>
#include <QPointer>

#include <utility>

#include "widgets/alert_dialog.h"

namespace velmara {

void placeOnWindow(QWidget& dialog, const QWidget* window, bool asSheet) {
  if (window == nullptr) return;
  dialog.adjustSize();
  const QRect frame = window->geometry();
  QRect place(QPoint(), dialog.size());
  place.moveCenter(frame.center());
  constexpr int kSheetsTop = 3;
  if (asSheet) place.moveTop(frame.top() + (frame.height() - place.height()) / kSheetsTop);
  dialog.move(place.topLeft());
}

// A sheet that is open over the main window would cover an alert of the main window's.
QWidget* DesktopAlerts::frontWindow() const {
  QWidget* modal = QApplication::activeModalWidget();
  return modal != nullptr ? modal : mainWindow_.data();
}

int DesktopAlerts::runModal(const Alert& alert) {
  QWidget* window = frontWindow();
  // On the heap: its window, and the dialog with it, may go while the dialog waits.
  const QPointer<AlertDialog> dialog = new AlertDialog(alert, window);
  placeOnWindow(*dialog, window, false);
  dialog->exec();
  if (!dialog) return alert.buttons.empty() ? 0 : static_cast<int>(alert.buttons.size()) - 1;
  const int answer = dialog->answer();
  delete dialog;
  return answer;
}

void DesktopAlerts::beginSheet(const Alert& alert, Completion completion) {
  QWidget* window = frontWindow();
  auto* dialog = new AlertDialog(alert, window);
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  placeOnWindow(*dialog, window, true);
  QObject::connect(dialog, &QDialog::finished, dialog,
                   [dialog, completion = std::move(completion)] {
                     if (completion) completion(dialog->answer());
                   });
  dialog->open();
}

}  // namespace velmara
