#include "e2e/scene.h"

#include <gtest/gtest.h>

#include <QDir>

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "widgets/style.h"

namespace velmara::e2e {
namespace {

int wholeHalf(int length) {
  return static_cast<int>(std::floor(length / 2.0));
}

QString failureFolder() {
  QString folder = QStringLiteral(VELMARA_E2E_FAILURES);
  QDir().mkpath(folder);
  return folder;
}

}  // namespace

Scene emptyScene(const QRect& place) {
  Scene scene{place, QImage(place.size(), QImage::Format_RGB32), {}};
  scene.picture.fill(style::kSurround);
  return scene;
}

QSize fittedSize(const QSize& photo, const QSize& area, double factor) {
  const double scale =
      std::min(1.0 * area.width() / photo.width(), 1.0 * area.height() / photo.height());
  return {static_cast<int>(std::lround(photo.width() * scale * factor)),
          static_cast<int>(std::lround(photo.height() * scale * factor))};
}

QRect placeIn(const QSize& area, const QSize& picture, const QPoint& dragged) {
  const QPoint corner(wholeHalf(area.width() - picture.width()),
                      wholeHalf(area.height() - picture.height()));
  return {corner + dragged, picture};
}

QRect visiblePart(const QSize& area, const QRect& standsAt) {
  return standsAt.intersected(QRect(QPoint(), area)).translated(-standsAt.topLeft());
}

int differingPixels(const QImage& seen, const Scene& expected) {
  if (seen.size() != expected.picture.size()) {
    return expected.picture.width() * expected.picture.height();
  }
  int differing = 0;
  for (const QRect& part : QRegion(expected.picture.rect()).subtracted(expected.covered)) {
    for (int y = part.top(); y <= part.bottom(); ++y) {
      const auto* a = reinterpret_cast<const QRgb*>(seen.constScanLine(y));
      const auto* b = reinterpret_cast<const QRgb*>(expected.picture.constScanLine(y));
      for (int x = part.left(); x <= part.right(); ++x) {
        if (((a[x] ^ b[x]) & RGB_MASK) != 0) ++differing;
      }
    }
  }
  return differing;
}

double meanDifference(const QImage& one, const QImage& other) {
  if (one.size() != other.size() || one.isNull()) return 255.0;
  double sum = 0.0;
  for (int y = 0; y < one.height(); ++y) {
    for (int x = 0; x < one.width(); ++x) {
      const QRgb a = one.pixel(x, y);
      const QRgb b = other.pixel(x, y);
      sum += std::abs(qRed(a) - qRed(b)) + std::abs(qGreen(a) - qGreen(b)) +
             std::abs(qBlue(a) - qBlue(b));
    }
  }
  return sum / (3.0 * one.width() * one.height());
}

std::string keepFor(const std::string& what, const QImage& seen, const Scene& expected) {
  const auto* test = testing::UnitTest::GetInstance()->current_test_info();
  const QString stem = failureFolder() + QLatin1Char('/') + QString::fromLatin1(test->name()) +
                       QLatin1Char('-') + QString::fromStdString(what).replace(' ', '-');
  seen.save(stem + QStringLiteral("-seen.png"));
  expected.picture.save(stem + QStringLiteral("-expected.png"));
  return what + ": " + std::to_string(differingPixels(seen, expected)) + " of " +
         std::to_string(seen.width() * seen.height()) + " pixels differ; see " +
         stem.toStdString() + "-seen.png and -expected.png";
}

}  // namespace velmara::e2e
