#pragma once

#include <QDialog>
#include <QPoint>
#include <QPointer>
#include <QString>
#include <QWidget>

#include "platform/panels.h"

namespace velmara {

/// The text with places to break a line inside words that are too long for one, file names mostly.
/// The places cannot be seen.
QString breakableText(const QString& text);

/// An alert in our look: icon, message, informative text and its buttons, the first one rightmost.
/// Return presses the first button, Escape and closing the last one; it is moved by its background.
class AlertDialog : public QDialog {
  Q_OBJECT

 public:
  /// Not shown yet.
  AlertDialog(const Alert& alert, QWidget* parent);

  /// The index of the button that was pressed.
  int answer() const { return answer_; }

 protected:
  void reject() override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;

 private:
  void finishWith(int button);

  int lastButton_ = 0;
  int answer_ = 0;
  QPoint pressedAt_;
};

/// Shows alerts as dialogs of ours on the window in front (windowInFront): modal
/// ones in the middle of it, sheets under its upper edge. A sheet whose window is deleted is not
/// answered any more.
class DesktopAlerts final : public AlertPresenter {
 public:
  /// Shows alerts without a window until one is set.
  explicit DesktopAlerts(QWidget* mainWindow = nullptr) : mainWindow_(mainWindow) {}

  /// Which window alerts belong to; null for none.
  void setMainWindow(QWidget* mainWindow) { mainWindow_ = mainWindow; }

  int runModal(const Alert& alert) override;
  void beginSheet(const Alert& alert, Completion completion) override;

 private:
  QPointer<QWidget> mainWindow_;
};

/// The window that dialogs belong on: the dialog that is open, else the window in use, else the
/// main one.
QWidget* windowInFront(QWidget* mainWindow);

/// Moves a dialog so that it stands in the middle of a window, or in the middle of its upper third.
void placeOnWindow(QWidget& dialog, const QWidget* window, bool asSheet);

}  // namespace velmara
