#pragma once

#include <QString>

#include <vector>

namespace velmara {

/// What a page of the tips teaches; the picture is drawn by drawTipPicture.
enum class TipTopic { kOpen, kAuto, kLevel, kCompare, kExport };

struct Tip {
  TipTopic topic;
  QString title;
  QString text;
};

/// The pages in their order, translated.
std::vector<Tip> allTips();

}  // namespace velmara
