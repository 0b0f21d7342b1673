#include "app/sheets/tips.h"

#include <QCoreApplication>

namespace velmara {
namespace {

QString text(const char* source) {
  return QCoreApplication::translate("TipsSheet", source);
}

}  // namespace

std::vector<Tip> allTips() {
  return {
      {TipTopic::kOpen, text("Open a photo"),
       text("Drop a photo on the window, or press Ctrl+O. Its file stays as it is, unless you save "
            "over it yourself.")},
      {TipTopic::kAuto, text("Let Velmara choose"),
       text("Auto measures how noisy the photo is and chooses the strength by that. Every photo "
            "starts with it.")},
      {TipTopic::kLevel, text("Or choose a level"),
       text("The slider goes from 10 % to 100 %. A higher level takes away more noise, and some of "
            "the finest detail with it.")},
      {TipTopic::kCompare, text("Compare"),
       text("See the photo by itself, on both sides of a line you can move, or beside its result. "
            "At 100 % and 200 % you can judge the noise.")},
      {TipTopic::kExport, text("Save the result"),
       text("Ctrl+S filters the whole photo at its full size and saves it upright, as JPEG, TIFF, "
            "BMP, GIF or PNG.")},
  };
}

}  // namespace velmara
