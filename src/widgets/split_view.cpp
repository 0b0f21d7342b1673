#include "widgets/split_view.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QRegion>
#include <QResizeEvent>

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "widgets/style.h"

namespace velmara {
namespace {

constexpr Seconds kDuration{0.25};
constexpr Seconds kFrame{1.0 / 60.0};

}  // namespace

/// A move of the dividers under way.
struct SplitView::Animation {
  SplitFrames from;
  SplitFrames to;
  std::chrono::steady_clock::time_point begin;
  std::unique_ptr<Timer> timer;
};

SplitView::SplitView(QWidget* parent, Scheduler& timers, const Clock& clock)
    : QWidget(parent), timers_(timers), clock_(clock) {
  setFocusPolicy(Qt::TabFocus);
  setAttribute(Qt::WA_NoSystemBackground);
  setCursor(Qt::SplitHCursor);
  split_.frames.resize(2);
}

SplitView::~SplitView() = default;

void SplitView::setSubviewCount(int count) {
  endAnimation();
  split_.frames.resize(static_cast<std::size_t>(std::max(count, 0)));
  laidOutSize_ = QSize();
  layoutIfNeeded();
}

void SplitView::setVertical(bool isVertical) {
  split_.isVertical = isVertical;
  setCursor(isVertical ? Qt::SplitHCursor : Qt::SplitVCursor);
  setSubviewCount(subviewCount());
}

void SplitView::setFrame(const QRect& frame) {
  setGeometry(frame);
  layoutIfNeeded();
}

void SplitView::setDelegate(SplitViewDelegate* delegate) {
  delegate_ = delegate;
  layoutRectangles();
}

void SplitView::setSubviewFrames(const SplitFrames& frames) {
  split_ = frames;
  subviewsChanged();
}

void SplitView::setPosition(double position, int ofDividerAtIndex) {
  if (ofDividerAtIndex < 0 || ofDividerAtIndex >= dividerCount()) return;
  layoutIfNeeded();
  endAnimation();
  double allowed = position;
  if (delegate_ != nullptr) {
    const double lowest = delegate_->constrainMinCoordinate(*this, position, ofDividerAtIndex);
    const double highest = delegate_->constrainMaxCoordinate(*this, position, ofDividerAtIndex);
    allowed = std::max(lowest, std::min(highest, position));
  }
  setSubviewFrames(withDividerAt(split_, static_cast<std::size_t>(ofDividerAtIndex), allowed,
                                 dividerThickness()));
}

void SplitView::subviewsChanged() {
  layoutRectangles();
  if (delegate_ != nullptr) delegate_->splitViewDidResizeSubviews(*this);
}

// The view's mask is its dividers, so that the picture below shows and gets the mouse.
void SplitView::layoutRectangles() {
  effectiveRects_.clear();
  QRegion mask;
  for (int i = 0; i < dividerCount(); ++i) {
    const QRectF drawn =
        dividerRect(split_, static_cast<std::size_t>(i), size(), dividerThickness());
    const QRectF effective =
        delegate_ != nullptr ? delegate_->effectiveRect(*this, drawn, drawn, i) : drawn;
    effectiveRects_.push_back(effective);
    mask += drawn.united(effective).toAlignedRect();
  }
  mask &= rect();
  // An empty mask would mean none.
  setMask(mask.isEmpty() ? QRegion(-1, -1, 1, 1) : mask);
  update();
}

void SplitView::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  layoutIfNeeded();
}

void SplitView::layoutIfNeeded() {
  if (laidOutSize_ == size()) return;
  if (animation_) {
    split_ = animation_->to;
    endAnimation();
  }
  const QSize oldSize = laidOutSize_;
  laidOutSize_ = size();
  if (delegate_ != nullptr && oldSize.isValid()) {
    delegate_->resizeSubviewsWithOldSize(*this, oldSize);
  } else {
    split_ = equalFrames(split_.frames.size(), isVertical(), size(), dividerThickness());
  }
  split_ = settledInBounds(split_, size());
  subviewsChanged();
}

void SplitView::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  layoutIfNeeded();
  layoutRectangles();
}

void SplitView::drawDividerInRect(QPainter& painter, const QRectF& rect) {
  painter.fillRect(rect, palette().mid());
}

void SplitView::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  const qreal ratio = devicePixelRatioF();
  for (int i = 0; i < dividerCount(); ++i) {
    QRectF rect = dividerRect(split_, static_cast<std::size_t>(i), size(), dividerThickness());
    // Hairlines between two pixels would be blurred.
    rect.moveTo(std::round(rect.x() * ratio) / ratio, std::round(rect.y() * ratio) / ratio);
    drawDividerInRect(painter, rect);
  }
}

int SplitView::dividerAt(const QPointF& point) const {
  const auto found = std::find_if(effectiveRects_.begin(), effectiveRects_.end(),
                                  [&](const QRectF& rect) { return rect.contains(point); });
  return found != effectiveRects_.end() ? static_cast<int>(found - effectiveRects_.begin()) : -1;
}

void SplitView::mousePressEvent(QMouseEvent* event) {
  event->accept();
  if (event->button() != Qt::LeftButton) return;
  draggedDivider_ = dividerAt(event->position());
  if (draggedDivider_ >= 0) {
    dragOffset_ = along(event->position()) - positionOfDividerAtIndex(draggedDivider_);
  }
}

void SplitView::mouseMoveEvent(QMouseEvent* event) {
  event->accept();
  if (draggedDivider_ >= 0 && event->buttons().testFlag(Qt::LeftButton)) {
    setPosition(along(event->position()) - dragOffset_, draggedDivider_);
  }
}

void SplitView::mouseReleaseEvent(QMouseEvent* event) {
  event->accept();
  if (event->button() == Qt::LeftButton) draggedDivider_ = -1;
}

void SplitView::keyPressEvent(QKeyEvent* event) {
  constexpr double kStep = 10.0;
  constexpr double kFineStep = 1.0;
  const bool back = event->key() == (isVertical() ? Qt::Key_Left : Qt::Key_Up);
  const bool forth = event->key() == (isVertical() ? Qt::Key_Right : Qt::Key_Down);
  if (!back && !forth) {
    QWidget::keyPressEvent(event);
    return;
  }
  const double step = event->modifiers().testFlag(Qt::ShiftModifier) ? kFineStep : kStep;
  setPosition(positionOfDividerAtIndex(0) + (back ? -step : step), 0);
}

double SplitView::positionOfDividerAtIndex(int index) const {
  if (index < 0 || index >= subviewCount() || isSubviewCollapsed(index)) return 0.0;
  return split_.farEdge(static_cast<std::size_t>(index));
}

void SplitView::setPosition(double position, int ofDividerAtIndex, bool animated) {
  if (animated && ofDividerAtIndex >= 0 && ofDividerAtIndex < subviewCount()) {
    setPositions({position}, {ofDividerAtIndex});
  } else {
    setPosition(position, ofDividerAtIndex);
  }
}

void SplitView::setPositions(const std::vector<double>& positions,
                             const std::vector<int>& ofDividersAtIndexes) {
  layoutIfNeeded();
  endAnimation();
  SplitFrames target = split_;
  const std::size_t pairs = std::min(positions.size(), ofDividersAtIndexes.size());
  for (std::size_t pair = 0; pair < pairs; ++pair) {
    const int index = ofDividersAtIndexes[pair];
    if (index < 0 || index >= dividerCount()) continue;
    target =
        withDividerAt(target, static_cast<std::size_t>(index), positions[pair], dividerThickness());
  }
  animation_ = std::make_unique<Animation>(Animation{split_, target, clock_.monotonic(), nullptr});
  animation_->timer = timers_.start(kFrame, true, [this] { stepAnimation(); });
  if (delegate_ != nullptr) delegate_->splitViewIsAnimating(*this, true);
}

void SplitView::stepAnimation() {
  const Seconds passed = clock_.monotonic() - animation_->begin;
  const double t = std::min(1.0, passed / kDuration);
  const SplitFrames frames = interpolated(animation_->from, animation_->to, easeInEaseOut(t));
  if (t < 1.0) {
    split_ = frames;
    subviewsChanged();
  } else {
    split_ = animation_->to;
    const auto ended = std::move(animation_);
    subviewsChanged();
    if (delegate_ != nullptr) delegate_->splitViewIsAnimating(*this, false);
  }
}

void SplitView::endAnimation() {
  if (!animation_) return;
  animation_.reset();
  if (delegate_ != nullptr) delegate_->splitViewIsAnimating(*this, false);
}

// A light grey band framed by black hairlines, with a grip in its middle.
void CustomizedSplitView::drawDividerInRect(QPainter& painter, const QRectF& rect) {
  const double x = rect.x();
  const double h = rect.height();
  const QColor lightGray(170, 170, 170);  // Two thirds white.
  painter.fillRect(QRectF(x + 1, 0, 1, h), Qt::black);
  painter.fillRect(QRectF(x + 2, 0, 2, h), lightGray);
  painter.fillRect(QRectF(x + 4, 0, 1, h), Qt::black);
  painter.fillRect(QRectF(x + 1, h / 2 - 10, 4, 20), Qt::black);
  painter.fillRect(QRectF(x, h / 2 - 1, 6, 2), Qt::black);
  if (hasFocus()) painter.fillRect(QRectF(x + 2, h / 2 - 9, 2, 18), style::kAccent);
}

double CustomSplitViewDelegate::constrainMinCoordinate(const SplitView& splitView,
                                                       double /*proposed*/, int ofSubviewAt) {
  return lowestPosition(splitView.subviewFrames(), static_cast<std::size_t>(ofSubviewAt),
                        minimumLengthOf(lengthsByViewIndex, ofSubviewAt));
}

double CustomSplitViewDelegate::constrainMaxCoordinate(const SplitView& splitView,
                                                       double /*proposed*/, int ofSubviewAt) {
  return highestPosition(splitView.subviewFrames(), static_cast<std::size_t>(ofSubviewAt),
                         minimumLengthOf(lengthsByViewIndex, ofSubviewAt + 1));
}

void CustomSplitViewDelegate::resizeSubviewsWithOldSize(SplitView& splitView,
                                                        const QSizeF& oldSize) {
  splitView.setSubviewFrames(resizedByPriority(splitView.subviewFrames(), oldSize, splitView.size(),
                                               splitView.dividerThickness(), viewIndicesByPriority,
                                               lengthsByViewIndex));
}

QRectF CustomSplitViewDelegate::effectiveRect(const SplitView& /*splitView*/,
                                              const QRectF& proposedEffectiveRect,
                                              const QRectF& forDrawnRect,
                                              int /*ofDividerAtIndex*/) {
  center_.post(notifications::kSpliviewPositionMoved);
  return velmara::effectiveRect(proposedEffectiveRect, forDrawnRect);
}

void CustomSplitViewDelegate::splitViewDidResizeSubviews(const SplitView& /*splitView*/) {
  center_.post(notifications::kSpliviewPositionMoved);
}

}  // namespace velmara
