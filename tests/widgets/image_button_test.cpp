// How a button is drawn from images, and how its title is laid out.
#include <gtest/gtest.h>

#include <QTest>

#include <algorithm>
#include <string>

#include "support/painted_images.h"
#include "widgets/img_button.h"

namespace velmara {
namespace {

using testing_support::PaintedImages;
using testing_support::rendered;
using Face = TitleFont::Face;

// A font in which a letter is half as wide as high, and a line as high as the size.
QSizeF blockFont(const QString& text, const TitleFont& font) {
  qsizetype longest = 0;
  const QStringList lines = text.split(QLatin1Char('\n'));
  for (const QString& line : lines) longest = std::max(longest, line.size());
  return {static_cast<double>(longest) * font.size / 2.0,
          static_cast<double>(lines.size()) * font.size};
}

ImageButtonFields withTitle(const char* title) {
  ImageButtonFields fields;
  fields.oTitle = fields.mTitle = QString::fromLatin1(title);
  fields.colorText = Qt::red;
  return fields;
}

TEST(ImageButtonTest, OnlyTheFirstSeparatorBreaksTheTitle) {
  const char* const rows[][3] = {{"Save", " ", "Save"},         {"A b c", " ", "A\nb c"},
                                 {"a--b--c", "--", "a\nb--c"},  {" lead", " ", "\nlead"},
                                 {"trail ", " ", "trail\n"},    {"a  b", " ", "a\n b"},
                                 {"one\ntwo", " ", "one\ntwo"}, {"Save As", "", "Save As"}};
  for (const auto& [title, separator, expected] : rows) {
    EXPECT_EQ(splitIntoTwoLines(title, separator), QString(expected)) << title;
  }
}

TEST(ImageButtonTest, TheTitleTakesTheLargestSizeThatFitsItsBox) {
  const struct {
    const char* title;
    QRectF rect;
    bool isTwoLines;
    int size;
    QRectF place;
  } rows[] = {// The box is 90 x 20: the height decides, at 21 it is too high.
              {"Save", {0, 0, 100, 30}, false, 20, {5, 5, 90, 20}},
              // The width decides: 12 letters of 7.5 at 15 fill the 90 points.
              {"Twelve chars", {0, 0, 100, 50}, false, 15, {5, 17.5, 90, 40}},
              // Not even 5 fits, so 4 is taken, and the box is lower than the text.
              {"Save", {0, 0, 100, 12}, false, 4, {5, 4, 90, 2}},
              {"An endless title that never ever fits", {0, 0, 40, 30}, false, 4, {5, 13, 30, 20}},
              // Broken at its first blank: 11 letters of 8 fill 88 of 90 points.
              {"Batch Process All", {0, 0, 100, 44}, true, 16, {5, 6, 90, 40}},
              // Every size fits, at 50 exactly: it stays as it was.
              {"A", {0, 0, 500, 60}, false, 12, {}}};
  for (const auto& row : rows) {
    ImageButtonFields fields = withTitle(row.title);
    layoutTitle(fields, row.rect, row.isTwoLines, blockFont);
    const TextAttributes& found = row.isTwoLines ? fields.dictM : fields.dictNoM;
    const TextAttributes expected{{Face::kSystem, row.size, false}, Qt::red, row.isTwoLines, true};
    EXPECT_EQ(found, row.place.isNull() ? TextAttributes() : expected) << row.title;
    EXPECT_EQ(row.isTwoLines ? fields.rectTextM : fields.rectTextNoM, row.place) << row.title;
    if (row.place.isNull()) continue;
    EXPECT_EQ(row.isTwoLines ? fields.sizeM : fields.sizeNoM, blockFont(fields.mTitle, found.font));
    EXPECT_EQ(row.isTwoLines ? fields.sizeNoM : fields.sizeM, QSizeF());
  }
  ImageButtonFields fields;
  fields.marginLeft = 20;
  fields.marginBottom = 0;
  fields.marginTopML = -3;
  EXPECT_EQ(titleBox(fields, {10, 10, 100, 30}, false), QRectF(30, 15, 75, 25));
  EXPECT_EQ(titleBox(fields, {10, 10, 100, 30}, true), QRectF(30, 7, 75, 31));
}

TEST(ImageButtonTest, TheSizeIsSearchedInLucidaGrandeAndDrawnInTheSystemFont) {
  ImageButtonFields fields = withTitle("Save");
  layoutTitle(fields, {0, 0, 100, 30}, false, [](const QString& text, const TitleFont& font) {
    return blockFont(text, font) * (font.face == Face::kLucidaGrande ? 1.0 : 2.0);
  });
  EXPECT_EQ(fields.dictNoM.font.size, 20);
  EXPECT_EQ(fields.sizeNoM, QSizeF(80, 40));
  EXPECT_EQ(fields.rectTextNoM, QRectF(5, -5, 90, 20)) << "moved up: the text is taller";
}

constexpr QRgb kWhite = 0xffffffffU;
const QRgb kYellow = QColor(Qt::yellow).rgb();

class IMGButtonPaintTest : public testing::TestWithParam<int> {
 protected:
  IMGButtonPaintTest() {
    // Every state's parts have a blue of their own; the green tells the part.
    const char* states[] = {"on", "onDwn", "onDis", "off", "offDwn", "offDis"};
    QString names[6][3];
    for (int state = 0; state < 6; ++state) {
      const int widths[] = {8, 4, 12};
      for (int i = 0; i < 3; ++i) {
        names[state][i] = QString::fromLatin1(states[state]) + QString::number(i);
        images.add(names[state][i], {widths[i], 20}, part(state, 10 + 10 * i));
      }
    }
    images.add(QStringLiteral("hover"), {12, 20}, QColor(Qt::yellow));
    const auto& n = names;
    button.setButtonImages(n[0][0], n[0][1], n[0][2], n[1][0], n[1][1], n[1][2], n[2][0], n[2][1],
                           n[2][2], n[3][0], n[3][1], n[3][2], n[4][0], n[4][1], n[4][2], n[5][0],
                           n[5][1], n[5][2]);
    button.imgMouseHover = QStringLiteral("hover");
    button.resize(60, 20);
    button.show();
  }

  int scale() const { return GetParam(); }
  // The colour in the middle of the button's height at a place in points.
  QRgb at(int x) { return rendered(button, scale()).pixel(x * scale(), 10 * scale()); }
  static QRgb part(int state, int green) { return qRgb(200, green, 20 * state); }

  PaintedImages images;
  IMGButton button{nullptr, images};
};

INSTANTIATE_TEST_SUITE_P(Scales, IMGButtonPaintTest, testing::Values(1, 2));

TEST_P(IMGButtonPaintTest, EachStateHasItsImagesAndCapsKeepTheirWidth) {
  const QImage image = rendered(button, scale());
  for (int x = 0; x < image.width(); ++x) {
    const int green = x / scale() < 8 ? 10 : x / scale() < 48 ? 20 : 30;
    for (const int y : {0, image.height() - 1}) ASSERT_EQ(image.pixel(x, y), part(3, green)) << x;
  }
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

  // The pointer's image lies only over the off state.
  button.mouseEntered();
  EXPECT_EQ(at(55), part(0, 30));
  button.setState(0);
  EXPECT_EQ(at(4), part(0, 10));
  EXPECT_EQ(at(55), kYellow);
  button.setEnabled(false);
  EXPECT_EQ(at(55), kYellow);
  button.mouseExited();
  EXPECT_EQ(at(55), part(5, 30));

  button.setButtonsImages({}, QStringLiteral("missing"), {}, {}, {}, {}, {}, {}, {});
  button.setEnabled(true);
  EXPECT_EQ(at(30), kWhite);
  button.imgOffState_Md = QStringLiteral("off1");
  EXPECT_EQ(at(0), part(3, 20)) << "without caps the middle fills the bounds";
  EXPECT_EQ(at(59), part(3, 20));
}

}  // namespace
}  // namespace velmara
