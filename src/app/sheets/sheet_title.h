#pragma once

#include <QFont>

namespace velmara {

/// The font of a sheet's heading, made from that of its text.
inline QFont sheetTitleFont(QFont text) {
  constexpr double kScale = 1.3;
  text.setPointSizeF(text.pointSizeF() * kScale);
  text.setWeight(QFont::DemiBold);
  return text;
}

}  // namespace velmara
