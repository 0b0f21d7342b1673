#pragma once

namespace velmara {

/// Which of a row of pages is shown. Paging stops at both ends.
class PageController {
 public:
  /// At least one page; the first is shown.
  explicit PageController(int pageCount) : pageCount_(pageCount) {}

  /// How many pages, and which is shown, from 0.
  int pageCount() const { return pageCount_; }
  int selectedIndex() const { return selectedIndex_; }
  /// Whether there is no page before it, or after.
  bool isFirst() const { return selectedIndex_ == 0; }
  bool isLast() const { return selectedIndex_ == pageCount_ - 1; }

  /// Each returns whether another page is shown now.
  bool navigateBack() { return select(selectedIndex_ - 1); }
  bool navigateForward() { return select(selectedIndex_ + 1); }
  bool select(int index) {
    if (index < 0 || index >= pageCount_ || index == selectedIndex_) return false;
    selectedIndex_ = index;
    return true;
  }

 private:
  int pageCount_;
  int selectedIndex_ = 0;
};

}  // namespace velmara
