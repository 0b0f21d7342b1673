#pragma once

#include <chrono>
#include <memory>

#include "widgets/split_view.h"

namespace velmara {

/// An animation of a split view's dividers under way.
struct SplitView::Animation {
  SplitFrames from;
  SplitFrames to;
  std::chrono::steady_clock::time_point begin;
  std::unique_ptr<Timer> timer;
};

}  // namespace velmara
