#include "widgets/style.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QApplication>
#include <QProgressBar>

#include <algorithm>
#include <cmath>

#include "support/painted_images.h"
#include "widgets/image_provider.h"

namespace velmara {
namespace {

// Contrast of two colours (WCAG 2.1, relative luminance).
double contrast(const QColor& a, const QColor& b) {
  const auto luminance = [](const QColor& color) {
    const auto linear = [](double c) {
      return c <= 0.03928 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
           0.0722 * linear(color.blueF());
  };
  const double x = luminance(a);
  const double y = luminance(b);
  return (std::max(x, y) + 0.05) / (std::min(x, y) + 0.05);
}

TEST(StyleTest, TextAndFocusAreReadable) {
  EXPECT_GE(contrast(style::kText, style::kWindow), 7.0);
  EXPECT_GE(contrast(style::kText, style::kAccent), 7.0);
  EXPECT_GE(contrast(style::kTextDim, style::kWindow), 4.5);
  EXPECT_GE(contrast(style::kFocusRing, style::kWindow), 3.0);
  EXPECT_LE(style::kSurround.hsvSaturation(), 5) << "what photos are judged on";
}

TEST(StyleTest, TheSheetIsAppliedAndEveryNameInItIsAColour) {
  const QString sheet = qobject_cast<QApplication*>(QCoreApplication::instance())->styleSheet();
  EXPECT_FALSE(sheet.isEmpty());
  EXPECT_FALSE(sheet.contains(QLatin1Char('@')));
  QProgressBar bar;
  bar.setTextVisible(false);
  bar.resize(200, 6);
  bar.setValue(50);
  const QImage drawn = testing_support::rendered(bar);
  EXPECT_EQ(drawn.pixelColor(90, 3), style::kAccent);
  EXPECT_NE(drawn.pixelColor(110, 3), style::kAccent);
}

TEST(BundleImagesTest, EveryNamedPictureIsThereAtBothScales) {
  QStringList names;
  for (const char* glyph : {"open_folder", "save", "batch", "zoom_in", "auto_mode", "help"}) {
    for (const char* state : {"", "_selected", "_yellow_selected", "_disabled"}) {
      names.append(QString::fromLatin1(glyph) + QString::fromLatin1(state));
    }
  }
  QList<QImage> seen;
  for (const QString& name : names) {
    const QPixmap once = bundleImages().imageNamed(name, 1.0);
    const QPixmap twice = bundleImages().imageNamed(name, 2.0);
    ASSERT_FALSE(once.isNull()) << name.toStdString();
    EXPECT_EQ(twice.devicePixelRatio(), 2.0) << name.toStdString();
    EXPECT_EQ(twice.size(), once.size() * 2) << name.toStdString();
    EXPECT_FALSE(seen.contains(once.toImage())) << name.toStdString() << " looks like another";
    seen.append(once.toImage());
  }
  EXPECT_TRUE(bundleImages().imageNamed(QStringLiteral("missing"), 2.0).isNull());
  EXPECT_TRUE(bundleImages().imageNamed({}, 1.0).isNull());
  // A picture of one scale serves for all.
  EXPECT_EQ(bundleImages().imageNamed(QStringLiteral("velmara-64"), 2.0).devicePixelRatio(), 1.0);
}

}  // namespace
}  // namespace velmara
