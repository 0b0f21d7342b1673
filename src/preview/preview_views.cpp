#include "preview/preview_views.h"

#include <QFrame>

#include "preview/views/picture_view.h"
#include "widgets/split_view.h"

namespace velmara {

void showViewsForStyle(const PreviewViews& views, PreviewStyle style) {
  const bool isSingle = style == PreviewStyle::kSingle;
  const bool isSplit = style == PreviewStyle::kSplit;
  const bool isDual = style == PreviewStyle::kDual;
  if (!isSingle && !isSplit && !isDual) return;
  views.splitView->setVisible(isSplit);
  views.imgDualModeDivider->setVisible(isDual);
  views.imgFilteredImgVWLeft->setVisible(!isSingle);
  views.vwBefore->setVisible(!isSingle);
  views.vwAfter->setVisible(!isSingle);
  views.vwAfterFull->setVisible(isSingle);
  if (isDual) views.vwBeforeAfter->show();
}

void showViewsForSplitViewPlacement(const PreviewViews& views, PreviewStyle style,
                                    bool hasPicture) {
  views.splitView->setVisible(hasPicture && style == PreviewStyle::kSplit);
  if (hasPicture) views.imgDualModeDivider->setVisible(style == PreviewStyle::kDual);
}

void showViewsForNewResult(const PreviewViews& views, PreviewStyle style) {
  views.splitView->setVisible(style == PreviewStyle::kSplit);
  views.imgFilteredImgVWRight->setVisible(style != PreviewStyle::kDual);
  if (style != PreviewStyle::kDual) return;
  views.imgFilteredImgVWLeft->hide();
  views.imgFilteredImgVWLeftForDual->hide();
  views.imgFilteredImgVWRightForDual->show();
  views.imgDualModeDivider->show();
}

}  // namespace velmara
