#pragma once

#include <QString>
#include <QWidget>

#include "widgets/image_provider.h"

namespace velmara {

/// A view whose background is tiled with a named image.
class TiledView : public QWidget {
  Q_OBJECT

 public:
  /// Without an image; `images` must outlive it.
  explicit TiledView(QWidget* parent = nullptr, ImageProvider& images = bundleImages());

  /// The image to tile with; an empty name or one that is not there draws nothing.
  void setImageName(const QString& name);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  ImageProvider& images_;
  QString name_;
};

}  // namespace velmara
