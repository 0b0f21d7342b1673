#pragma once

#include <QObject>
#include <QRect>

#include <memory>

#include "app/main_screen/main_screen_view_controller.h"
#include "app/main_screen/screen_services.h"

namespace Ui {
class MainWindow;
}

namespace velmara {

class AppStoreWindow;

/// The main window `windowMain` and the view controller shown in its `mainScreenView`. Main thread.
class MainWindowController : public QObject {
  Q_OBJECT
  Q_PROPERTY(QObject* viewController READ currentViewController NOTIFY viewControllerChanged)

 public:
  explicit MainWindowController(ScreenServices services);
  ~MainWindowController() override;

  void awakeFromNib();
  void changeViewController(int index);
  void hideTopWindowButtonAfterDelay();
  void showWindow();

  AppStoreWindow* windowMain() const { return windowMain_.get(); }
  MainScreenViewController* viewController() const { return myCurrentViewController_; }

 Q_SIGNALS:
  void viewControllerChanged();

 private:
  QObject* currentViewController() const { return myCurrentViewController_; }
  void placeWindow();

  ScreenServices services_;
  std::unique_ptr<Ui::MainWindow> ui_;
  std::unique_ptr<AppStoreWindow> windowMain_;
  MainScreenViewController* mainScreenViewController_ = nullptr;
  MainScreenViewController* myCurrentViewController_ = nullptr;
};

}  // namespace velmara
