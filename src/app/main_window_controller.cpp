#include "app/main_window_controller.h"

#include <QGuiApplication>
#include <QIcon>
#include <QScreen>

#include <algorithm>
#include <utility>

#include "app/main_menu.h"
#include "preview/window_geometry.h"
#include "ui_MainWindow.h"
#include "widgets/app_store_window.h"

namespace velmara {
namespace {

constexpr Seconds kIconDelay(0.1);

QSize wholeSize(const Size& size) {
  return QSizeF(size.width, size.height).toSize();
}

QIcon applicationIcon() {
  QIcon icon;
  for (const int size : {16, 24, 32, 48, 64, 128, 256}) {
    icon.addFile(QStringLiteral(":/images/velmara-%1.png").arg(size));
  }
  return icon;
}

}  // namespace

MainWindowController::MainWindowController(ScreenServices services)
    : services_(std::move(services)),
      ui_(std::make_unique<Ui::MainWindow>()),
      windowMain_(std::make_unique<AppStoreWindow>(nullptr, services_.timers)) {
  ui_->setupUi(windowMain_.get());
  windowMain_->setWindowTitle(QString::fromStdString(services_.bundle.CFBundleName));
  awakeFromNib();
}

MainWindowController::~MainWindowController() {
  services_.timers.cancel(this);
}

void MainWindowController::awakeFromNib() {
  changeViewController(0);
}

void MainWindowController::changeViewController(int index) {
  if (index != 0) return;
  if (myCurrentViewController_ != nullptr) {
    ui_->mainScreenView->layout()->removeWidget(myCurrentViewController_);
  }
  if (mainScreenViewController_ == nullptr) {
    mainScreenViewController_ = new MainScreenViewController(services_, ui_->mainScreenView);
    mainScreenViewController_->loadView();
  }
  myCurrentViewController_ = mainScreenViewController_;
  myCurrentViewController_->setObjectName(QStringLiteral("MainScreenViewController"));
  ui_->mainScreenView->layout()->addWidget(myCurrentViewController_);
  myCurrentViewController_->representedObject = static_cast<int>(
      myCurrentViewController_->findChildren<QWidget*>(Qt::FindDirectChildrenOnly).size());
  Q_EMIT viewControllerChanged();
  windowMain_->windowShouldClose = [screen = myCurrentViewController_] {
    return screen->windowShouldClose();
  };
  windowMain_->setMenuBar(makeMainMenu(*myCurrentViewController_, services_));
  services_.center.post(notifications::kSetupHeader, {},
                        {{std::string(notifications::kWindowObject), windowMain_.get()}});
  placeWindow();
  hideTopWindowButtonAfterDelay();
  services_.timers.after(this, "hideTopWindowButtonAfterDelay", Seconds(0.01),
                         [this] { hideTopWindowButtonAfterDelay(); });
}

void MainWindowController::placeWindow() {
  const QScreen* screen = QGuiApplication::primaryScreen();
  if (screen == nullptr) return;
  const QRect visible = screen->availableGeometry();
  const MainWindowGeometry geometry = mainWindowGeometry(
      {static_cast<double>(visible.width()), static_cast<double>(visible.height())});
  windowMain_->setMinimumSize(wholeSize(geometry.minimumSize));
  // The minimum wins on a screen smaller than it.
  windowMain_->setMaximumSize(
      wholeSize(geometry.maximumSize).expandedTo(wholeSize(geometry.minimumSize)));
  const Rect frame = topDown(geometry.frame, screen->geometry().height());
  QRect place = QRectF(frame.x, frame.y, frame.width, frame.height).toRect();
  // On a screen smaller than the minimum, the title bar is what has to be reached.
  place.moveTopLeft({std::max(place.left(), visible.left()), std::max(place.top(), visible.top())});
  windowMain_->setGeometry(place);
}

void MainWindowController::hideTopWindowButtonAfterDelay() {
  windowMain_->hideStandardButtons();
}

void MainWindowController::showWindow() {
  windowMain_->show();
  // Seven pictures that the first sight of the window does not wait for.
  services_.timers.after(this, "setWindowIcon", kIconDelay,
                         [this] { windowMain_->setWindowIcon(applicationIcon()); });
  windowMain_->raise();
  windowMain_->activateWindow();
}

}  // namespace velmara
