#pragma once

#include <QRectF>
#include <QSizeF>
#include <QString>

#include <functional>

#include "widgets/image_button_fields.h"

namespace velmara {

/// Where the parts of a horizontal three-part image go.
struct ThreePartRects {
  QRectF start, middle, end;
};

/// The caps keep their own width and take the bounds' height, the middle is stretched between them.
/// Too narrow bounds cut the end cap's place first short of the start cap's.
ThreePartRects threePartRects(const QRectF& bounds, double startWidth, double endWidth);

/// The names of the three images of a state, and whether the hover overlay is drawn over them.
struct ImageButtonPattern {
  QString start, middle, end;
};
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
  QString text;
  QRectF rect;
  TextAttributes attributes;
};

/// Whether a title has two layouts to choose from: it holds the separator or a newline.
bool canBreakTitle(const ImageButtonFields& fields);

/// Chooses the layout with the larger text area, one line when they are equal.
ChosenTitle chooseTitle(const ImageButtonFields& fields, bool isMouseDown);

}  // namespace velmara
