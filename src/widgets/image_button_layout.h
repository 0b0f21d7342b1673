#pragma once

#include <QColor>
#include <QPixmap>
#include <QRectF>
#include <QSizeF>
#include <QString>

#include <cstdint>
#include <functional>

namespace velmara {

/// A font by what the title layout knows of it. Sizes are in points of the screen's logical pixels.
struct TitleFont {
  /// The family, the size and the weight.
  enum class Face { kSystem, kLucidaGrande };
  Face face = Face::kSystem;
  int size = 12;
  bool bold = false;

  friend bool operator==(const TitleFont&, const TitleFont&) = default;
};

/// How a title is drawn; as it stands, in the default paragraph style and black.
struct TextAttributes {
  /// As the parts of a title's paragraph.
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
  /// Off, off pressed, off disabled, and the same three of on.
  QString imgOffState_Md, imgOffState_St, imgOffState_En;
  QString imgOffStateDwn_Md, imgOffStateDwn_St, imgOffStateDwn_En;
  QString imgOffStateDis_Md, imgOffStateDis_St, imgOffStateDis_En;
  QString imgOnState_Md, imgOnState_St, imgOnState_En;
  QString imgOnStateDwn_Md, imgOnStateDwn_St, imgOnStateDwn_En;
  QString imgOnStateDis_Md, imgOnStateDis_St, imgOnStateDis_En;
  /// Drawn over the others while the pointer is on the button.
  QString imgMouseHover;
  QString imgMouseOut;  ///< kept, not drawn
  /// The last drawing's pictures.
  QPixmap pattern_St, pattern_Mdl, pattern_En;

  /// Of the title: by state, and that of the last drawing.
  QColor colorOnState = Qt::white;
  QColor colorOnStateDis = QColor(96, 96, 96);
  QColor colorOffState = Qt::white;
  QColor colorOffStateDis = QColor(96, 96, 96);
  QColor colorText;

  /// In points; of the one-line layout, then of the two-line one.
  std::int32_t marginLeft = 5, marginRight = 5, marginTop = 5, marginBottom = 5;
  std::int32_t marginTopML = 2, marginBottomML = 2;

  /// What layoutTitle found.
  TextAttributes dictM, dictNoM;
  QSizeF sizeM, sizeNoM;
  QRectF rectTextM, rectTextNoM;
  /// The title as it is, and broken into two lines.
  QString oTitle;
  QString mTitle;
  /// Whether the title is broken, and the text that stands where it may be.
  bool isMultiLine = false;
  QString multiLineStr = QStringLiteral(" ");
  /// Where the title was drawn last.
  QRectF rectText;
  /// Whether the button is enabled again after its action, instead of by its owner.
  bool enableImmediately = true;
  /// Whether titles measured between 200 and 245 points wide are drawn larger and bold.
  bool makeBoldFont = false;
  /// Whether the pointer is on it.
  bool isMouseHover = false;
};

/// Where the parts of a horizontal three-part image go.
struct ThreePartRects {
  /// In points; from left to right.
  QRectF start, middle, end;
};

/// The caps keep their own width and take the bounds' height, the middle is stretched between them.
/// Too narrow bounds cut the end cap's place first short of the start cap's.
ThreePartRects threePartRects(const QRectF& bounds, double startWidth, double endWidth);

/// The names of the three images of a state, and whether the hover overlay is drawn over them.
struct ImageButtonPattern {
  /// Empty for none.
  QString start, middle, end;
};
/// The images and the colour of the title in a state.
ImageButtonPattern patternFor(const ImageButtonFields& fields, bool enabled, bool on,
                              bool isMouseDown);
QColor titleColorFor(const ImageButtonFields& fields, bool enabled, bool on);

/// Breaks a title into two lines at its first separator: the parts behind a later one are joined
/// again. A title without the separator is unchanged.
QString splitIntoTwoLines(const QString& title, const QString& separator);

/// Measures a title, whose lines are parted by newlines, without wrapping it.
using TextMeasurer = std::function<QSizeF(const QString& text, const TitleFont& font)>;

/// The inset box for a title in one layout.
QRectF titleBox(const ImageButtonFields& fields, const QRectF& rect, bool multi);

/// Finds the title's attributes, size and rectangle in the one-line or the two-line layout and
/// stores them in the fields of that layout (two lines: mTitle is broken first). The size is the
/// largest below the first of 5, 6, ..., 50 that does not fit the box; when all fit, the fields
/// stay as they were.
void layoutTitle(ImageButtonFields& fields, const QRectF& rect, bool multi,
                 const TextMeasurer& measure);

/// The older form for one layout: attributes for a title in a rectangle of which only the size
/// counts; rectText is centred by the height found.
TextAttributes layoutTitleOlder(ImageButtonFields& fields, const QString& title, const QSizeF& size,
                                const TextMeasurer& measure);

/// What is drawn of a title after layoutTitle of the one-line layout and, if the title can be
/// broken, of the two-line layout.
struct ChosenTitle {
  /// What, where and how.
  QString text;
  QRectF rect;
  TextAttributes attributes;
};

/// Whether a title has two layouts to choose from: it holds the separator or a newline.
bool canBreakTitle(const ImageButtonFields& fields);

/// Chooses the layout with the larger text area, one line when they are equal.
ChosenTitle chooseTitle(const ImageButtonFields& fields, bool isMouseDown);

}  // namespace velmara
