#pragma once

#include <QPoint>
#include <QPointer>
#include <QRect>
#include <QSize>
#include <QWidget>
#include <Qt>

#include <array>
#include <functional>
#include <memory>
#include <optional>

#include "platform/timer.h"

class QMenuBar;
class QVBoxLayout;

namespace velmara {

/// How a title bar is to look beside its height. Our window buttons stand in the title-bar view, so
/// these are only kept.
struct TitleBarAppearance {
  /// In points where they are lengths.
  bool centersTrafficLightButtons = true;
  double trafficLightButtonsTopMargin = 0.0;
  double trafficLightButtonsLeftMargin = 0.0;
  bool showsTitle = true;
};

/// One of the eight strips along a frameless window's border that the window is resized by.
struct EdgeStrip {
  /// Which edges it moves, and where it lies in the window.
  Qt::Edges edges;
  QRect rect;
};

/// The strips of a window of that size: four sides of the thickness, between four square corners.
std::array<EdgeStrip, 8> edgeStrips(const QSize& size, int thickness, int corner);

/// A window's frame after its edges were dragged by a distance: the opposite edges stay, also when
/// a limit of the size is reached.
QRect resizedFrame(const QRect& frame, Qt::Edges edges, const QPoint& distance,
                   const QSize& minimum, const QSize& maximum);

/// A press of the left button that becomes a drag of a window: by the desktop where it can do that,
/// so that its snapping works, else by us.
class WindowDrag {
 public:
  /// The button went down on a window that stands there.
  void press(QMouseEvent* event, const QRect& frame);
  /// How far we are to bring the window from where it stood; nothing if that is not up to us.
  /// `handOver` asks the desktop to take the drag and returns whether it does.
  std::optional<QPoint> move(QMouseEvent* event, QWindow* window,
                             const std::function<bool(QWindow&)>& handOver);
  /// The button was let go, or the drag is over for another reason.
  void release(QMouseEvent* event);
  void end() { state_ = State::kNone; }

  /// Where the window stood when the button went down.
  const QRect& pressedFrame() const { return pressedFrame_; }

 private:
  enum class State { kNone, kPressed, kByUs, kByDesktop };

  State state_ = State::kNone;
  QPoint pressedAt_;
  QRect pressedFrame_;
};

/// A window without the desktop's frame: a thin border, a title bar drawn by a view of the owner's,
/// and a content view below it. It is moved by its background (whatever child does not take the
/// mouse itself) and resized at all edges and corners, by the desktop where that can do it; a
/// double click on the title bar maximises it or brings it back. Nothing of it needs a compositor.
/// No control has the focus to begin with; Tab gives it to the first one.
class AppStoreWindow : public QWidget {
  Q_OBJECT

 public:
  /// Hidden, without content.
  explicit AppStoreWindow(QWidget* parent = nullptr, Scheduler& timers = eventLoopTimers());

  /// The height of the title bar in points, 0 to begin with.
  double titleBarHeight() const { return titleBar_->minimumHeight(); }
  void setTitleBarHeight(double height);

  /// The views are taken over and filled into their places; what stood there before is given back
  /// without a parent.
  void setTitleBarView(QWidget* view) { setView(titleBarView_, titleBar_, view); }
  QWidget* contentView() const { return contentView_; }
  void setContentView(QWidget* view) { setView(contentView_, content_, view); }

  /// Shows a menu bar above the title bar; at most once.
  void setMenuBar(QMenuBar* menuBar);

  /// Kept, not drawn.
  TitleBarAppearance titleBarAppearance;

  /// Nothing: this window has no buttons of the desktop's. Kept for the controllers, which hide
  /// them twice.
  void hideStandardButtons() {}

  /// A window that is not resizable has no live edges and is not maximised by double clicks.
  bool isResizable() const { return isResizable_; }
  void setResizable(bool isResizable);

  /// Maximises the window or brings it back.
  void zoom();

  /// Asked before the window closes, for whatever reason; without one it may close.
  std::function<bool()> windowShouldClose;

 Q_SIGNALS:
  /// The window has a new size.
  void windowDidResize();

  /// The size has not changed for 0.15 seconds after it did, and no edge is being dragged.
  void windowDidEndLiveResize();

  /// The window is about to close.
  void windowWillClose();

 protected:
  void changeEvent(QEvent* event) override;
  void closeEvent(QCloseEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;

 private:
  bool fillsScreen() const;
  void layoutEdges();
  void awaitEndOfResize();
  void setView(QPointer<QWidget>& slot, QWidget* holder, QWidget* view);

  Scheduler& timers_;
  QVBoxLayout* layout_;
  QWidget* titleBar_;
  QWidget* content_;
  QPointer<QWidget> titleBarView_;
  QPointer<QWidget> contentView_;
  std::array<QWidget*, 8> edges_{};
  bool isResizable_ = true;
  std::unique_ptr<Timer> liveResize_;
  WindowDrag drag_;
};

}  // namespace velmara
