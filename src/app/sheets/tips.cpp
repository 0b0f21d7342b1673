#include "app/sheets/tips.h"

#include <QCoreApplication>

namespace velmara {
namespace {

struct TipsSheetText {
  Q_DECLARE_TR_FUNCTIONS(TipsSheet)
};

}  // namespace

std::vector<Tip> allTips() {
  return {
      {TipTopic::kOpen, TipsSheetText::tr("Open a photo"),
       TipsSheetText::tr(
           "Drop a photo on the window, or press Ctrl+O. Its file stays as it is, unless you save "
           "over it yourself.")},
      {TipTopic::kAuto, TipsSheetText::tr("Let Velmara choose"),
       TipsSheetText::tr(
           "Auto measures how noisy the photo is and chooses the strength by that. Every photo "
           "starts with it.")},
      {TipTopic::kLevel, TipsSheetText::tr("Or choose a level"),
       TipsSheetText::tr(
           "The slider goes from 10 % to 100 %. A higher level takes away more noise, and some of "
           "the finest detail with it.")},
      {TipTopic::kCompare, TipsSheetText::tr("Compare"),
       TipsSheetText::tr(
           "See the photo by itself, on both sides of a line you can move, or beside its result. "
           "At 100 % and 200 % you can judge the noise.")},
      {TipTopic::kExport, TipsSheetText::tr("Save the result"),
       TipsSheetText::tr(
           "Ctrl+S filters the whole photo at its full size and saves it upright, as JPEG, TIFF, "
           "BMP, GIF or PNG.")},
  };
}

}  // namespace velmara
