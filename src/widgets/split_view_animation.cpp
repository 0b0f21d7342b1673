#include "widgets/split_view_animation.h"

#include <algorithm>
#include <cstddef>

namespace velmara {
namespace {

constexpr Seconds kDuration{0.25};
constexpr Seconds kFrame{1.0 / 60.0};

}  // namespace

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

}  // namespace velmara
