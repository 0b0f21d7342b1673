#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QTest>

#include <string>

#include "support/painted_images.h"
#include "widgets/img_button.h"

namespace velmara {
namespace {

using testing_support::PaintedImages;
using testing_support::rendered;

constexpr QRgb kWhite = 0xffffffffU;

class IMGButtonPaintTest : public testing::TestWithParam<int> {
 protected:
  IMGButtonPaintTest() {
    // Every state's parts have a blue of their own: 0x10 on, 0x20 off; the green tells the part.
    const char* states[] = {"on", "onDwn", "onDis", "off", "offDwn", "offDis"};
    for (int state = 0; state < 6; ++state) {
      const QString name = QString::fromLatin1(states[state]);
      images.add(name + QStringLiteral("_St"), {8, 20}, QColor(200, 10, 20 * state));
      images.add(name + QStringLiteral("_Md"), {4, 20}, QColor(200, 20, 20 * state));
      images.add(name + QStringLiteral("_En"), {12, 20}, QColor(200, 30, 20 * state));
    }
    images.add(QStringLiteral("hover"), {12, 20}, QColor(Qt::yellow));
    const auto n = [](const char* name) { return QString::fromLatin1(name); };
    button.setButtonImages(n("on_St"), n("on_Md"), n("on_En"), n("onDwn_St"), n("onDwn_Md"),
                           n("onDwn_En"), n("onDis_St"), n("onDis_Md"), n("onDis_En"), n("off_St"),
                           n("off_Md"), n("off_En"), n("offDwn_St"), n("offDwn_Md"), n("offDwn_En"),
                           n("offDis_St"), n("offDis_Md"), n("offDis_En"));
    button.imgMouseHover = n("hover");
    button.resize(60, 20);
    button.show();
  }

  int scale() const { return GetParam(); }

  // The colours in the middle of a row at a place in points.
  QRgb at(double x, double y = 10) {
    return rendered(button, scale())
        .pixel(static_cast<int>(x * scale()), static_cast<int>(y * scale()));
  }
  static QRgb part(int state, int green) { return qRgb(200, green, 20 * state); }

  PaintedImages images;
  IMGButton button{nullptr, images};
};

INSTANTIATE_TEST_SUITE_P(Scales, IMGButtonPaintTest, testing::Values(1, 2));

TEST_P(IMGButtonPaintTest, DrawsCapsAtTheirWidthAndStretchesTheMiddle) {
  const QImage image = rendered(button, scale());
  const int y = image.height() / 2;
  for (int x = 0; x < image.width(); ++x) {
    const int point = x / scale();
    const int green = point < 8 ? 10 : point < 48 ? 20 : 30;
    ASSERT_EQ(image.pixel(x, y), part(3, green)) << x;
  }
  EXPECT_EQ(image.pixel(0, 0), part(3, 10));
  EXPECT_EQ(image.pixel(image.width() - 1, image.height() - 1), part(3, 30));
}

TEST_P(IMGButtonPaintTest, EachStateHasItsImages) {
  EXPECT_EQ(at(30), part(3, 20));
  button.setState(1);
  EXPECT_EQ(at(30), part(0, 20));
  button.setEnabled(false);
  EXPECT_EQ(at(30), part(2, 20));
  button.setState(0);
  EXPECT_EQ(at(30), part(5, 20));
  button.setEnabled(true);

  // A press disables, so it shows the disabled images until the owner enables the button again.
  QTest::mousePress(&button, Qt::LeftButton);
  EXPECT_EQ(at(30), part(5, 20));
  button.setEnabled(true);
  EXPECT_EQ(at(30), part(4, 20));
  button.setState(1);
  EXPECT_EQ(at(30), part(1, 20));
  QTest::mouseRelease(&button, Qt::LeftButton, {}, QPoint(-1, -1));
}

TEST_P(IMGButtonPaintTest, HoverOverlaysOnlyTheOffState) {
  button.mouseEntered();
  EXPECT_EQ(at(4), part(0, 10));
  EXPECT_EQ(at(30), part(0, 20));
  EXPECT_EQ(at(55), QColor(Qt::yellow).rgb());
  button.setState(1);
  EXPECT_EQ(at(55), part(0, 30));
  button.setState(0);
  button.setEnabled(false);
  EXPECT_EQ(at(55), QColor(Qt::yellow).rgb());
  button.mouseExited();
  EXPECT_EQ(at(55), part(5, 30));
}

TEST_P(IMGButtonPaintTest, MissingImagesAndNamesDrawNothing) {
  const QString none;
  const QString missing = QStringLiteral("missing");
  button.setButtonsImages(none, missing, none, none, none, none, none, none, none);
  EXPECT_EQ(at(4), kWhite);
  EXPECT_EQ(at(30), kWhite);
  button.imgOffState_Md = QStringLiteral("off_Md");
  EXPECT_EQ(at(0), part(3, 20));  // Without caps the middle fills the bounds.
  EXPECT_EQ(at(59), part(3, 20));
}

TEST_P(IMGButtonPaintTest, TheTitleHasTheStatesColourAndStaysInsideItsMargins) {
  button.setButtonsImages({}, {}, {}, {}, {}, {}, {}, {}, {});
  button.resize(80, 30);
  button.setText(QStringLiteral("Save"));
  button.colorOffState = Qt::red;
  button.colorOnState = Qt::blue;
  for (const int state : {0, 1}) {
    button.setState(state);
    const QImage image = rendered(button, scale());
    QRect ink;
    bool coloured = false;
    for (int y = 0; y < image.height(); ++y) {
      for (int x = 0; x < image.width(); ++x) {
        const QColor pixel = image.pixelColor(x, y);
        if (pixel.rgb() == kWhite) continue;
        ink |= QRect(x, y, 1, 1);
        coloured |=
            state == 0 ? pixel.red() > pixel.blue() + 100 : pixel.blue() > pixel.red() + 100;
      }
    }
    EXPECT_TRUE(coloured) << state;
    EXPECT_GT(ink.width(), 20 * scale());
    EXPECT_TRUE(QRect(5, 5, 70, 20)
                    .contains(QRect(ink.left() / scale(), ink.top() / scale(),
                                    ink.width() / scale(), ink.height() / scale())))
        << ink.left() << " " << ink.top() << " " << ink.width() << " " << ink.height();
  }
}

TEST_P(IMGButtonPaintTest, TheKeyboardsFocusShows) {
  button.activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&button));
  button.clearFocus();
  const QImage without = rendered(button, scale());
  button.setFocus(Qt::TabFocusReason);
  ASSERT_TRUE(button.hasFocus());
  EXPECT_NE(rendered(button, scale()), without);
}

TEST(IMGButtonTest, TheOlderFormSetsABrokenTitle) {
  PaintedImages images;
  IMGButton button(nullptr, images);
  button.setText(QStringLiteral("Save As"));
  button.getAttributesForRect(QRectF(0, 0, 60, 40));
  EXPECT_EQ(button.text(), QStringLiteral("Save As"));
  button.isMultiLine = true;
  const TextAttributes attributes = button.getAttributesForRect(QRectF(0, 0, 60, 40));
  EXPECT_EQ(button.text(), QStringLiteral("Save\nAs"));
  EXPECT_TRUE(attributes.wordWraps);
  const QSizeF size = measureTitle(button.text(), attributes.font);
  EXPECT_LE(size.width(), 60);
  EXPECT_LE(size.height(), 40);
}

}  // namespace
}  // namespace velmara
