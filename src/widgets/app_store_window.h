#pragma once

#include <QPoint>
#include <QPointer>
#include <QWidget>

#include <array>
#include <functional>
#include <memory>

#include "platform/timer.h"
#include "widgets/window_edge.h"

class QMenuBar;
class QVBoxLayout;

namespace velmara {

/// How a title bar is to look beside its height. Our window buttons stand in the title-bar view, so
/// these are only kept.
struct TitleBarAppearance {
  bool centersTrafficLightButtons = true;
  double trafficLightButtonsTopMargin = 0.0;
  double trafficLightButtonsLeftMargin = 0.0;
  bool showsTitle = true;
};

/// A window without the desktop's frame: a thin border, a title bar drawn by a view of the owner's,
/// and a content view below it. It is moved by its background (whatever child does not take the
/// mouse itself) and resized at all edges and corners, by the desktop where that can do it; a
/// double click on the title bar maximises it or brings it back. Nothing of it needs a compositor.
/// No control has the focus to begin with; Tab gives it to the first one.
class AppStoreWindow : public QWidget {
  Q_OBJECT

 public:
  explicit AppStoreWindow(QWidget* parent = nullptr, Scheduler& timers = eventLoopTimers());

  /// The height of the title bar in points, 0 to begin with.
  double titleBarHeight() const;
  void setTitleBarHeight(double height);

  /// The views are taken over and filled into their places; what stood there before is given back
  /// without a parent.
  QWidget* titleBarView() const { return titleBarView_; }
  void setTitleBarView(QWidget* view);
  QWidget* contentView() const { return contentView_; }
  void setContentView(QWidget* view);

  /// Shows a menu bar above the title bar; at most once.
  void setMenuBar(QMenuBar* menuBar);

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
  enum class Drag { kNone, kPressed, kByUs, kByDesktop };

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
  std::array<WindowEdge*, 8> edges_{};
  bool isResizable_ = true;
  std::unique_ptr<Timer> liveResize_;

  Drag drag_ = Drag::kNone;
  QPoint pressedAt_;
  QPoint pressedPosition_;
};

}  // namespace velmara
