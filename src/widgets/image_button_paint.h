#pragma once

#include <QFont>
#include <QRectF>

#include "widgets/image_button_layout.h"
#include "widgets/image_provider.h"

class QPainter;

namespace velmara {

/// The font of this desktop that stands for a title font.
QFont fontFor(const TitleFont& font);

/// Measures with the fonts of this desktop.
QSizeF measureTitle(const QString& text, const TitleFont& font);

/// Draws a three-part image over the bounds. Images that are missing draw nothing.
void drawThreePartImage(QPainter& painter, const QRectF& bounds, const QPixmap& start,
                        const QPixmap& middle, const QPixmap& end);

/// The state of a button that is drawn.
struct ImageButtonDrawing {
  bool enabled = true;
  bool on = false;
  bool isMouseDown = false;
};

/// Draws a whole image button: its images, its title and the hover overlay. Stores in the fields
/// what it chose.
void paintImageButton(QPainter& painter, const QRectF& bounds, const QString& title,
                      const ImageButtonDrawing& drawing, ImageButtonFields& fields,
                      const ImageProvider& images);

}  // namespace velmara
