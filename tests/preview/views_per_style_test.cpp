#include "preview/views_per_style.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace velmara {
namespace {

// One letter a view, in the order of the fields: shown, hidden or as it is.
std::string letters(const ViewVisibility& views) {
  std::string text;
  for (const std::optional<bool>& view :
       {views.splitView, views.imgDualModeDivider, views.imgFilteredImgVWLeft,
        views.imgFilteredImgVWRight, views.imgFilteredImgVWLeftForDual,
        views.imgFilteredImgVWRightForDual, views.vwBeforeAfter, views.vwBefore, views.vwAfter,
        views.vwAfterFull}) {
    text += view ? (*view ? 's' : 'h') : '-';
  }
  return text;
}

TEST(ViewsPerStyleTest, FollowTheTable) {
  EXPECT_EQ(letters(viewsForStyle(PreviewStyle::kSingle)), "hhh----hhs");
  EXPECT_EQ(letters(viewsForStyle(PreviewStyle::kSplit)), "shs----ssh");
  EXPECT_EQ(letters(viewsForStyle(PreviewStyle::kDual)), "hss---sssh");
  EXPECT_EQ(letters(viewsForStyle(static_cast<PreviewStyle>(9))), "----------");
}

TEST(ViewsPerStyleTest, TheSplitViewNeedsAPictureAndSplitStyle) {
  EXPECT_EQ(letters(viewsForSplitViewPlacement(PreviewStyle::kSplit, false)), "h---------");
  EXPECT_EQ(letters(viewsForSplitViewPlacement(PreviewStyle::kSingle, true)), "hh--------");
  EXPECT_EQ(letters(viewsForSplitViewPlacement(PreviewStyle::kSplit, true)), "sh--------");
  EXPECT_EQ(letters(viewsForSplitViewPlacement(PreviewStyle::kDual, true)), "hs--------");
}

TEST(ViewsPerStyleTest, ANewResultShowsTheRightHalfOfItsStyle) {
  EXPECT_EQ(letters(viewsForNewResult(PreviewStyle::kSingle)), "h--s------");
  EXPECT_EQ(letters(viewsForNewResult(PreviewStyle::kSplit)), "s--s------");
  EXPECT_EQ(letters(viewsForNewResult(PreviewStyle::kDual)), "hshhhs----");
}

}  // namespace
}  // namespace velmara
