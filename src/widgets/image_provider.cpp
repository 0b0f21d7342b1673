#include "widgets/image_provider.h"

#include <QHash>

// Resources in a static library are only linked, and registered, if somebody asks for them; the
// macro has to stand outside of any namespace.
static void registerVelmaraImages() {
  Q_INIT_RESOURCE(velmara_images);
}

namespace velmara {
namespace {

class BundleImages final : public ImageProvider {
 public:
  BundleImages() { registerVelmaraImages(); }

  QPixmap imageNamed(const QString& name, qreal devicePixelRatio) const override {
    if (name.isEmpty()) return {};
    const bool fine = devicePixelRatio > 1.0;
    const QString file = fine ? name + QStringLiteral("@2x") : name;
    if (const auto known = pictures_.constFind(file); known != pictures_.cend()) return *known;
    QPixmap picture = load(file, fine ? 2.0 : 1.0);
    if (picture.isNull() && fine) picture = load(name, 1.0);
    pictures_.insert(file, picture);
    return picture;
  }

 private:
  static QPixmap load(const QString& file, qreal scale) {
    // With the format named, the toolkit does not load its plugins to find out.
    QPixmap picture(QStringLiteral(":/images/%1.png").arg(file), "PNG");
    picture.setDevicePixelRatio(scale);
    return picture;
  }

  mutable QHash<QString, QPixmap> pictures_;
};

}  // namespace

ImageProvider& bundleImages() {
  static BundleImages images;
  return images;
}

}  // namespace velmara
