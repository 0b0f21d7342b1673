#pragma once

#include <QDialog>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/panels.h"
#include "platform/workspace.h"
#include "session/batch/batch_list.h"

namespace Ui {
class BatchWindow;
}

namespace velmara {

class BatchTable;

/// The window in which many photos are denoised together: their list, what is done with them and
/// where the results go, and the run. It stands beside the main window and disturbs nothing there.
/// Closing it while a run goes on asks first. Main thread.
class BatchWindow : public QDialog {
  Q_OBJECT

 public:
  /// All of it must outlive the window.
  BatchWindow(BatchList& list, AlertPresenter& alerts, Panels& panels, Workspace& workspace);
  ~BatchWindow() override;

  /// Shows the window, or brings it to the front.
  void showWindow();

  /// Escape and the window's close button.
  void reject() override;

 protected:
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void fillChoices();
  void setupTable();
  void setupActions();
  void addPhotosTapped();
  void addFolderTapped();
  void removeTapped();
  void startTapped();
  void folderChosen(int index);
  void showFolder();
  void showState();
  void showProgress();
  void showExample();
  BatchNaming naming() const;
  std::vector<std::size_t> selectedPhotos() const;

  std::unique_ptr<Ui::BatchWindow> ui_;
  BatchList& list_;
  AlertPresenter& alerts_;
  Panels& panels_;
  Workspace& workspace_;
  BatchTable* table_ = nullptr;
  /// Empty: beside the photos.
  std::string folder_;
  bool closesAtTheEnd_ = false;
};

}  // namespace velmara
