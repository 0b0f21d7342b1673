#include "preview/views/screen_colors.h"

#include <QByteArray>
#include <QColorSpace>

#include "base/alpha.h"

namespace velmara {

ScreenColors::ScreenColors(const ColorProfile& profile) {
  if (profile == nullptr || profile->empty()) return;
  const QByteArray bytes(reinterpret_cast<const char*>(profile->data()),
                         static_cast<qsizetype>(profile->size()));
  const QColorSpace space = QColorSpace::fromIccProfile(bytes);
  const QColorSpace screen(QColorSpace::SRgb);
  if (!space.isValid() || space == screen) return;
  transform_ = space.transformationToColorSpace(screen);
  converts_ = true;
}

QImage ScreenColors::imageFor(const Bitmap& bitmap) const {
  if (!bitmap.isValid()) return {};
  const Bitmap rgba = asRgba(bitmap);
  if (!rgba.isValid()) return {};
  const QImage shared(rgba.bytes().data(), rgba.width(), rgba.height(),
                      static_cast<qsizetype>(rgba.rowBytes()), QImage::Format_RGBX8888);
  QImage image = shared.convertToFormat(QImage::Format_RGB32);
  if (converts_) image.applyColorTransform(transform_);
  return image;
}

}  // namespace velmara
