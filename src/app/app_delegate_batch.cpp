// Many photos at once: the batch window, and its part in the end of the application.
#include "app/app_delegate.h"
#include "app/batch/batch_window.h"
#include "app/main_window_controller.h"
#include "platform/timer.h"
#include "session/batch/batch_list.h"

namespace velmara {

void AppDelegate::showBatch() {
  if (batchWindow_ == nullptr) {
    batch_ = std::make_unique<BatchList>(jobServices(), eventLoopTimers());
    batchWindow_ = std::make_unique<BatchWindow>(*batch_, environment_.alerts, environment_.panels,
                                                 environment_.workspace);
  }
  batchWindow_->showWindow();
}

bool AppDelegate::mayLeaveBatch() {
  if (batch_ == nullptr || !batch_->isRunning()) return true;
  const int answer = environment_.alerts.runModal(
      {tr("The batch is not done yet.").toStdString(),
       tr("Results that are written stay.").toStdString(),
       {tr("Stop and Quit").toStdString(), tr("Go On").toStdString()}});
  if (answer != 0) return false;
  if (!batch_->isRunning()) return true;  // It has ended while the question stood there.
  connect(
      batch_.get(), &BatchList::stateChanged, this,
      [this] {
        if (!batch_->isRunning()) terminateApp();
      },
      Qt::QueuedConnection);
  batch_->cancel();
  return false;
}

}  // namespace velmara
