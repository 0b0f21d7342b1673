#include "widgets/app_store_window.h"

#include <QApplication>
#include <QCloseEvent>
#include <QMenuBar>
#include <QMouseEvent>
#include <QPainter>
#include <QVBoxLayout>
#include <QWindow>

#include <cmath>
#include <cstddef>

#include "widgets/style.h"
#include "widgets/window_edge.h"

namespace velmara {
namespace {

constexpr int kBorder = 1;
constexpr int kEdge = 5;
constexpr int kCorner = 12;
constexpr Seconds kResizeEnds{0.15};

QWidget* makeHolder(QWidget* parent) {
  auto* holder = new QWidget(parent);
  auto* layout = new QVBoxLayout(holder);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  return holder;
}

}  // namespace

AppStoreWindow::AppStoreWindow(QWidget* parent, Scheduler& timers)
    : QWidget(parent, Qt::Window | Qt::FramelessWindowHint),
      timers_(timers),
      layout_(new QVBoxLayout(this)),
      titleBar_(makeHolder(this)),
      content_(makeHolder(this)) {
  setAttribute(Qt::WA_OpaquePaintEvent);  // paintEvent fills all of it.
  layout_->setContentsMargins(kBorder, kBorder, kBorder, kBorder);
  layout_->setSpacing(0);
  layout_->addWidget(titleBar_);
  layout_->addWidget(content_, 1);
  titleBar_->setFixedHeight(0);
  const auto strips = edgeStrips(size(), kEdge, kCorner);
  for (std::size_t i = 0; i < strips.size(); ++i) {
    edges_[i] = new WindowEdge(this, strips[i].edges);
  }
  layoutEdges();
}

double AppStoreWindow::titleBarHeight() const {
  return titleBar_->minimumHeight();
}

void AppStoreWindow::setTitleBarHeight(double height) {
  titleBar_->setFixedHeight(static_cast<int>(std::lround(height)));
}

void AppStoreWindow::setView(QPointer<QWidget>& slot, QWidget* holder, QWidget* view) {
  if (slot == view) return;
  if (slot != nullptr) {
    holder->layout()->removeWidget(slot);
    slot->setParent(nullptr);
  }
  slot = view;
  if (view != nullptr) holder->layout()->addWidget(view);
}

void AppStoreWindow::setTitleBarView(QWidget* view) {
  setView(titleBarView_, titleBar_, view);
}

void AppStoreWindow::setContentView(QWidget* view) {
  setView(contentView_, content_, view);
}

void AppStoreWindow::setMenuBar(QMenuBar* menuBar) {
  // As a view of the layout: as its menu bar it would stand over the border.
  layout_->insertWidget(0, menuBar);
  layoutEdges();
}

void AppStoreWindow::setResizable(bool isResizable) {
  isResizable_ = isResizable;
  layoutEdges();
}

void AppStoreWindow::zoom() {
  if (isMaximized()) {
    showNormal();
  } else {
    showMaximized();
  }
}

bool AppStoreWindow::fillsScreen() const {
  return isMaximized() || isFullScreen();
}

void AppStoreWindow::layoutEdges() {
  const auto strips = edgeStrips(size(), kEdge, kCorner);
  for (std::size_t i = 0; i < strips.size(); ++i) {
    edges_[i]->setGeometry(strips[i].rect);
    edges_[i]->setVisible(isResizable_ && !fillsScreen());
    edges_[i]->raise();
  }
}

void AppStoreWindow::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::WindowStateChange) {
    const int border = fillsScreen() ? 0 : kBorder;
    layout_->setContentsMargins(border, border, border, border);
    layoutEdges();
    update();
  }
}

void AppStoreWindow::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  // Otherwise the first button gets the focus, which for a window's own buttons is the close
  // button.
  if (focusWidget() == nullptr) setFocus();
}

void AppStoreWindow::closeEvent(QCloseEvent* event) {
  if (windowShouldClose && !windowShouldClose()) {
    event->ignore();
    return;
  }
  Q_EMIT windowWillClose();
  event->accept();
}

void AppStoreWindow::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  layoutEdges();
  Q_EMIT windowDidResize();
  awaitEndOfResize();
}

// Whoever drags an edge may rest. The desktop that does the resizing lets the button's release
// through to the edge.
void AppStoreWindow::awaitEndOfResize() {
  liveResize_ = timers_.start(kResizeEnds, false, [this] {
    if (QGuiApplication::mouseButtons().testFlag(Qt::LeftButton)) {
      awaitEndOfResize();
    } else {
      Q_EMIT windowDidEndLiveResize();
    }
  });
}

void AppStoreWindow::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.fillRect(rect(), style::kWindow);
  if (fillsScreen()) return;
  painter.setPen(style::kBorder);
  painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

void AppStoreWindow::mousePressEvent(QMouseEvent* event) {
  event->accept();
  if (event->button() != Qt::LeftButton) return;
  drag_ = Drag::kPressed;
  pressedAt_ = event->globalPosition().toPoint();
  pressedPosition_ = pos();
}

void AppStoreWindow::mouseMoveEvent(QMouseEvent* event) {
  event->accept();
  const QPoint distance = event->globalPosition().toPoint() - pressedAt_;
  // Not on the press: some window managers stay in their move mode after a plain click.
  if (drag_ == Drag::kPressed && distance.manhattanLength() >= QApplication::startDragDistance()) {
    QWindow* handle = windowHandle();
    const bool taken = handle != nullptr && handle->startSystemMove();
    drag_ = taken ? Drag::kByDesktop : Drag::kByUs;
  }
  if (drag_ == Drag::kByUs && !fillsScreen()) move(pressedPosition_ + distance);
}

void AppStoreWindow::mouseReleaseEvent(QMouseEvent* event) {
  event->accept();
  if (event->button() == Qt::LeftButton) drag_ = Drag::kNone;
}

void AppStoreWindow::mouseDoubleClickEvent(QMouseEvent* event) {
  event->accept();
  drag_ = Drag::kNone;
  if (event->button() != Qt::LeftButton || !isResizable_) return;
  if (titleBar_->geometry().contains(event->position().toPoint())) zoom();
}

}  // namespace velmara
