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
  /// The screen that is shown.
  Q_PROPERTY(QObject* viewController READ currentViewController NOTIFY viewControllerChanged)

 public:
  /// Makes the window, without its screen.
  explicit MainWindowController(ScreenServices services);
  ~MainWindowController() override;

  /// Shows the main screen in it.
  void awakeFromNib();
  /// Shows the view controller of an index, 0 being the only one there is.
  void changeViewController(int index);
  /// Hides the desktop's window buttons.
  void hideTopWindowButtonAfterDelay();
  /// Shows the window in front.
  void showWindow();

  /// The window, for as long as this lives.
  AppStoreWindow* windowMain() const { return windowMain_.get(); }
  /// The screen that is shown; null before awakeFromNib().
  MainScreenViewController* viewController() const { return myCurrentViewController_; }

 Q_SIGNALS:
  /// Another screen is shown.
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
