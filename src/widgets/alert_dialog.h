#pragma once

#include <QDialog>
#include <QPoint>

#include "platform/alerts.h"

namespace velmara {

/// An alert in our look: icon, message, informative text and its buttons, the first one rightmost.
/// Return presses the first button, Escape and closing the last one; it is moved by its background.
class AlertDialog : public QDialog {
  Q_OBJECT

 public:
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

}  // namespace velmara
