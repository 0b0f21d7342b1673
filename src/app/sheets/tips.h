#pragma once

#include <QString>

#include <vector>

namespace velmara {

/// What a page of the tips teaches; the picture is drawn by drawTipPicture.
enum class TipTopic { kOpen, kAuto, kLevel, kCompare, kExport };

/// One page of the tips.
struct Tip {
  /// What it is about, and its words, translated.
  TipTopic topic;
  QString title;
  QString text;
};

/// The pages in their order, translated.
std::vector<Tip> allTips();

}  // namespace velmara
