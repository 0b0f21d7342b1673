#include "widgets/app_store_window.h"

#include <QApplication>
#include <QCloseEvent>
#include <QMenuBar>
#include <QMouseEvent>
#include <QPainter>
#include <QVBoxLayout>
#include <QWindow>

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "widgets/style.h"

namespace velmara {
namespace {

constexpr int kBorder = 1;
constexpr int kEdge = 5;
constexpr int kCorner = 12;
constexpr Seconds kResizeEnds{0.15};

// The pointer that tells how an edge or a corner moves.
Qt::CursorShape cursorForEdges(Qt::Edges edges) {
  const bool horizontal = edges.testFlag(Qt::LeftEdge) || edges.testFlag(Qt::RightEdge);
  const bool vertical = edges.testFlag(Qt::TopEdge) || edges.testFlag(Qt::BottomEdge);
  if (!vertical) return Qt::SizeHorCursor;
  if (!horizontal) return Qt::SizeVerCursor;
  return edges.testFlag(Qt::LeftEdge) == edges.testFlag(Qt::TopEdge) ? Qt::SizeFDiagCursor
                                                                     : Qt::SizeBDiagCursor;
}

// An invisible strip over a frameless window's border by which the window is resized.
class WindowEdge final : public QWidget {
 public:
  WindowEdge(QWidget* window, Qt::Edges edges) : QWidget(window), edges_(edges) {
    setCursor(cursorForEdges(edges));
  }

 protected:
  void mousePressEvent(QMouseEvent* event) override { drag_.press(event, window()->geometry()); }
  void mouseMoveEvent(QMouseEvent* event) override {
    const auto distance = drag_.move(event, window()->windowHandle(), [this](QWindow& handle) {
      return handle.startSystemResize(edges_);
    });
    if (distance) {
      window()->setGeometry(resizedFrame(drag_.pressedFrame(), edges_, *distance,
                                         window()->minimumSize(), window()->maximumSize()));
    }
  }
  void mouseReleaseEvent(QMouseEvent* event) override { drag_.release(event); }

 private:
  Qt::Edges edges_;
  WindowDrag drag_;
};

QWidget* makeHolder(QWidget* parent) {
  auto* holder = new QWidget(parent);
  auto* layout = new QVBoxLayout(holder);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  return holder;
}

}  // namespace

std::array<EdgeStrip, 8> edgeStrips(const QSize& size, int thickness, int corner) {
  const int w = size.width();
  const int h = size.height();
  const int right = w - thickness;
  const int bottom = h - thickness;
  return {{
      {Qt::TopEdge, {corner, 0, w - 2 * corner, thickness}},
      {Qt::BottomEdge, {corner, bottom, w - 2 * corner, thickness}},
      {Qt::LeftEdge, {0, corner, thickness, h - 2 * corner}},
      {Qt::RightEdge, {right, corner, thickness, h - 2 * corner}},
      {Qt::TopEdge | Qt::LeftEdge, {0, 0, corner, corner}},
      {Qt::TopEdge | Qt::RightEdge, {w - corner, 0, corner, corner}},
      {Qt::BottomEdge | Qt::LeftEdge, {0, h - corner, corner, corner}},
      {Qt::BottomEdge | Qt::RightEdge, {w - corner, h - corner, corner, corner}},
  }};
}

QRect resizedFrame(const QRect& frame, Qt::Edges edges, const QPoint& distance,
                   const QSize& minimum, const QSize& maximum) {
  int width = frame.width();
  int height = frame.height();
  if (edges.testFlag(Qt::RightEdge)) width += distance.x();
  if (edges.testFlag(Qt::LeftEdge)) width -= distance.x();
  if (edges.testFlag(Qt::BottomEdge)) height += distance.y();
  if (edges.testFlag(Qt::TopEdge)) height -= distance.y();
  width = std::max(minimum.width(), std::min(maximum.width(), width));
  height = std::max(minimum.height(), std::min(maximum.height(), height));
  const int x = edges.testFlag(Qt::LeftEdge) ? frame.x() + frame.width() - width : frame.x();
  const int y = edges.testFlag(Qt::TopEdge) ? frame.y() + frame.height() - height : frame.y();
  return {x, y, width, height};
}

void WindowDrag::press(QMouseEvent* event, const QRect& frame) {
  event->accept();
  if (event->button() != Qt::LeftButton) return;
  state_ = State::kPressed;
  pressedAt_ = event->globalPosition().toPoint();
  pressedFrame_ = frame;
}

std::optional<QPoint> WindowDrag::move(QMouseEvent* event, QWindow* window,
                                       const std::function<bool(QWindow&)>& handOver) {
  event->accept();
  const QPoint distance = event->globalPosition().toPoint() - pressedAt_;
  // Not on the press: some window managers stay in their mode after a plain click.
  if (state_ == State::kPressed &&
      distance.manhattanLength() >= QApplication::startDragDistance()) {
    state_ = window != nullptr && handOver(*window) ? State::kByDesktop : State::kByUs;
  }
  return state_ == State::kByUs ? std::optional(distance) : std::nullopt;
}

void WindowDrag::release(QMouseEvent* event) {
  event->accept();
  if (event->button() == Qt::LeftButton) end();
}

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
  isMaximized() ? showNormal() : showMaximized();
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
  drag_.press(event, QRect(pos(), size()));
}

void AppStoreWindow::mouseMoveEvent(QMouseEvent* event) {
  const auto distance =
      drag_.move(event, windowHandle(), [](QWindow& handle) { return handle.startSystemMove(); });
  if (distance && !fillsScreen()) move(drag_.pressedFrame().topLeft() + *distance);
}

void AppStoreWindow::mouseReleaseEvent(QMouseEvent* event) {
  drag_.release(event);
}

void AppStoreWindow::mouseDoubleClickEvent(QMouseEvent* event) {
  event->accept();
  drag_.end();
  if (event->button() != Qt::LeftButton || !isResizable_) return;
  if (titleBar_->geometry().contains(event->position().toPoint())) zoom();
}

}  // namespace velmara
