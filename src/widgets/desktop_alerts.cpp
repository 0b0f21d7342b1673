#include "widgets/desktop_alerts.h"

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

int DesktopAlerts::runModal(const Alert& alert) {
  // On the heap: the main window, and the dialog with it, may go while the dialog waits.
  const QPointer<AlertDialog> dialog = new AlertDialog(alert, mainWindow_);
  placeOnWindow(*dialog, mainWindow_, false);
  dialog->exec();
  if (!dialog) return alert.buttons.empty() ? 0 : static_cast<int>(alert.buttons.size()) - 1;
  const int answer = dialog->answer();
  delete dialog;
  return answer;
}

void DesktopAlerts::beginSheet(const Alert& alert, Completion completion) {
  auto* dialog = new AlertDialog(alert, mainWindow_);
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  placeOnWindow(*dialog, mainWindow_, true);
  QObject::connect(dialog, &QDialog::finished, dialog,
                   [dialog, completion = std::move(completion)] {
                     if (completion) completion(dialog->answer());
                   });
  dialog->open();
}

}  // namespace velmara
