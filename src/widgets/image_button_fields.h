#pragma once

#include <QColor>
#include <QPixmap>
#include <QRectF>
#include <QSizeF>
#include <QString>

#include <cstdint>

namespace velmara {

/// A font by what the title layout knows of it. Sizes are in points of the screen's logical pixels.
struct TitleFont {
  enum class Face { kSystem, kLucidaGrande };
  Face face = Face::kSystem;
  int size = 12;
  bool bold = false;

  friend bool operator==(const TitleFont&, const TitleFont&) = default;
};

/// How a title is drawn; as it stands, in the default paragraph style and black.
struct TextAttributes {
  TitleFont font;
  QColor color = Qt::black;
  bool wordWraps = false;
  bool centred = false;

  friend bool operator==(const TextAttributes&, const TextAttributes&) = default;
};

/// The fields of an image button: names of images by state (middle, start, end), title colours,
/// margins in points, and what the last drawing found for the title's one-line (NoM) and two-line
/// (M) layout.
struct ImageButtonFields {
  QString imgOffState_Md, imgOffState_St, imgOffState_En;
  QString imgOffStateDwn_Md, imgOffStateDwn_St, imgOffStateDwn_En;
  QString imgOffStateDis_Md, imgOffStateDis_St, imgOffStateDis_En;
  QString imgOnState_Md, imgOnState_St, imgOnState_En;
  QString imgOnStateDwn_Md, imgOnStateDwn_St, imgOnStateDwn_En;
  QString imgOnStateDis_Md, imgOnStateDis_St, imgOnStateDis_En;
  QString imgMouseHover;
  QString imgMouseOut;  ///< kept, not drawn
  QPixmap pattern_St, pattern_Mdl, pattern_En;

  QColor colorOnState = Qt::white;
  QColor colorOnStateDis = QColor(96, 96, 96);
  QColor colorOffState = Qt::white;
  QColor colorOffStateDis = QColor(96, 96, 96);
  QColor colorText;

  std::int32_t marginLeft = 5, marginRight = 5, marginTop = 5, marginBottom = 5;
  std::int32_t marginTopML = 2, marginBottomML = 2;

  TextAttributes dictM, dictNoM;
  QSizeF sizeM, sizeNoM;
  QRectF rectTextM, rectTextNoM;
  QString oTitle;
  QString mTitle;
  bool isMultiLine = false;
  QString multiLineStr = QStringLiteral(" ");
  QRectF rectText;
  bool enableImmediately = true;
  bool makeBoldFont = false;
  bool isMouseHover = false;
};

}  // namespace velmara
