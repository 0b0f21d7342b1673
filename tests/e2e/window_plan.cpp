#include "e2e/window_plan.h"

#include <QMenuBar>
#include <QWidget>

#include "preview/window_geometry.h"
#include "ui_MainScreenViewController.h"
#include "widgets/app_store_window.h"

namespace velmara::e2e {
namespace {

QRect wholeRect(const Rect& r) {
  return QRectF(r.x, r.y, r.width, r.height).toRect();
}

Size sizeOf(const QRect& rect) {
  return {static_cast<double>(rect.width()), static_cast<double>(rect.height())};
}

}  // namespace

struct WindowPlan::Views {
  AppStoreWindow window;
  QWidget* screen = new QWidget;
  Ui::MainScreenViewController ui;
};

WindowPlan::WindowPlan(const QSize& windowSize) : views_(std::make_unique<Views>()) {
  Views& v = *views_;
  v.ui.setupUi(v.screen);
  for (QWidget* unused :
       {static_cast<QWidget*>(v.ui.btnBatchProcess), static_cast<QWidget*>(v.ui.btnFeedback)}) {
    unused->hide();
  }
  v.window.setContentView(v.screen);
  v.window.setTitleBarView(v.ui.vwTopContainer);
  v.window.setTitleBarHeight(kTitleBarHeight);
  auto* menu = new QMenuBar;
  menu->setNativeMenuBar(false);
  menu->addMenu(QStringLiteral("&File"));
  v.window.setMenuBar(menu);
  v.window.setGeometry(QRect(QPoint(), windowSize));
  v.window.show();
}

WindowPlan::~WindowPlan() = default;

QRect WindowPlan::rectOf(const QString& name) const {
  const auto* view = views_->window.findChild<QWidget*>(name);
  if (view == nullptr) return {};
  return {view->mapTo(&views_->window, QPoint()), view->size()};
}

QRect WindowPlan::previewArea() const {
  const QRect main = rectOf(QStringLiteral("vwMainContainer"));
  const double caption = views_->ui.vwBeforeAfter->minimumHeight();
  return wholeRect(previewContainerFrame(sizeOf(main), caption)).translated(main.topLeft());
}

QRect WindowPlan::leftHalf() const {
  const QRect area = previewArea();
  return wholeRect(containerFrames(PreviewStyle::kDual, sizeOf(area)).vwImageContainer)
      .translated(area.topLeft());
}

QRect WindowPlan::rightHalf() const {
  const QRect area = previewArea();
  return wholeRect(containerFrames(PreviewStyle::kDual, sizeOf(area)).vwImageContainerForDualMode)
      .translated(area.topLeft());
}

QRect WindowPlan::captions() const {
  const QRect main = rectOf(QStringLiteral("vwMainContainer"));
  const int height = views_->ui.vwBeforeAfter->minimumHeight();
  return {main.left(), main.bottom() + 1 - height, main.width(), height};
}

}  // namespace velmara::e2e
