#pragma once

#include <QPointer>
#include <QWidget>

#include "platform/alerts.h"

namespace velmara {

/// Shows alerts as dialogs of ours on the main window, or on the dialog that is open over it: modal
/// ones in the middle of it, sheets under its upper edge. A sheet whose window is deleted is not
/// answered any more.
class DesktopAlerts final : public AlertPresenter {
 public:
  explicit DesktopAlerts(QWidget* mainWindow = nullptr) : mainWindow_(mainWindow) {}

  void setMainWindow(QWidget* mainWindow) { mainWindow_ = mainWindow; }

  int runModal(const Alert& alert) override;
  void beginSheet(const Alert& alert, Completion completion) override;

 private:
  QWidget* frontWindow() const;

  QPointer<QWidget> mainWindow_;
};

/// Moves a dialog so that it stands in the middle of a window, or in the middle of its upper third.
void placeOnWindow(QWidget& dialog, const QWidget* window, bool asSheet);

}  // namespace velmara
