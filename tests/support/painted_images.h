#pragma once

#include <QColor>
#include <QHash>
#include <QImage>
#include <QPainter>
#include <QPixmap>
#include <QWidget>

#include <cmath>

#include "widgets/image_provider.h"

namespace velmara::testing_support {

/// Pictures of one colour each, made for every scale that is asked for.
class PaintedImages final : public ImageProvider {
 public:
  void add(const QString& name, const QSize& size, const QColor& color) {
    pictures_.insert(name, {size, color});
  }

  QPixmap imageNamed(const QString& name, qreal devicePixelRatio) const override {
    const auto found = pictures_.constFind(name);
    if (found == pictures_.cend()) return {};
    const qreal scale = std::ceil(devicePixelRatio);
    QPixmap picture((QSizeF(found->size) * scale).toSize());
    picture.setDevicePixelRatio(scale);
    picture.fill(found->color);
    return picture;
  }

 private:
  struct Picture {
    QSize size;
    QColor color;
  };
  QHash<QString, Picture> pictures_;
};

/// What a widget draws on a white ground at a scale.
inline QImage rendered(QWidget& widget, qreal scale = 1.0) {
  QImage image((QSizeF(widget.size()) * scale).toSize(), QImage::Format_RGB32);
  image.setDevicePixelRatio(scale);
  image.fill(Qt::white);
  QPainter painter(&image);
  widget.render(&painter, QPoint(), QRegion(), QWidget::DrawChildren);
  painter.end();
  image.setDevicePixelRatio(1.0);
  return image;
}

}  // namespace velmara::testing_support
