#include "widgets/image_button_layout.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QStringList>

#include <algorithm>

namespace velmara {
namespace {

// A font in which a letter is half as wide as high, and a line as high as the size.
QSizeF blockFont(const QString& text, const TitleFont& font) {
  const QStringList lines = text.split(QLatin1Char('\n'));
  qsizetype longest = 0;
  for (const QString& line : lines) longest = std::max(longest, line.size());
  return {static_cast<double>(longest) * font.size / 2.0,
          static_cast<double>(lines.size()) * font.size};
}

ImageButtonFields withTitle(const char* title) {
  ImageButtonFields fields;
  fields.oTitle = fields.mTitle = QString::fromLatin1(title);
  return fields;
}

TEST(ThreePartRectsTest, CapsKeepTheirWidthAndTheMiddleIsStretched) {
  const struct {
    QRectF bounds;
    double start, end;
    QRectF expected[3];
  } rows[] = {
      {{0, 0, 100, 30}, 10, 20, {{0, 0, 10, 30}, {10, 0, 70, 30}, {80, 0, 20, 30}}},
      {{5, 7, 100, 30}, 0, 0, {{5, 7, 0, 30}, {5, 7, 100, 30}, {105, 7, 0, 30}}},
      {{0, 0, 36, 36}, 0, 36, {{0, 0, 0, 36}, {0, 0, 0, 36}, {0, 0, 36, 36}}},
      {{0, 0, 25, 10}, 20, 20, {{0, 0, 20, 10}, {20, 0, 0, 10}, {20, 0, 5, 10}}},
      {{0, 0, 15, 10}, 20, 20, {{0, 0, 15, 10}, {15, 0, 0, 10}, {15, 0, 0, 10}}},
      {{0, 0, 0, 0}, 20, 20, {{0, 0, 0, 0}, {0, 0, 0, 0}, {0, 0, 0, 0}}},
  };
  for (const auto& row : rows) {
    const ThreePartRects rects = threePartRects(row.bounds, row.start, row.end);
    EXPECT_EQ(rects.start, row.expected[0]) << row.start;
    EXPECT_EQ(rects.middle, row.expected[1]) << row.start;
    EXPECT_EQ(rects.end, row.expected[2]) << row.start;
  }
}

TEST(SplitTitleTest, OnlyTheFirstSeparatorBreaksTheLine) {
  const struct {
    const char* title;
    const char* separator;
    const char* expected;
  } rows[] = {
      {"Save", " ", "Save"},
      {"Save As", " ", "Save\nAs"},
      {"Save As New File", " ", "Save\nAs New File"},
      {"a--b--c", "--", "a\nb--c"},
      {" lead", " ", "\nlead"},
      {"trail ", " ", "trail\n"},
      {"a  b", " ", "a\n b"},
      {"one\ntwo", " ", "one\ntwo"},
      {"", " ", ""},
      {"Save As", "", "Save As"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(splitIntoTwoLines(QString::fromLatin1(row.title), QString::fromLatin1(row.separator)),
              QString::fromLatin1(row.expected))
        << row.title;
  }
}

TEST(TitleBoxTest, InsetsByTheMarginsOfItsLayout) {
  ImageButtonFields fields;
  EXPECT_EQ(titleBox(fields, {0, 0, 100, 30}, false), QRectF(5, 5, 90, 20));
  EXPECT_EQ(titleBox(fields, {0, 0, 100, 30}, true), QRectF(5, 2, 90, 26));
  fields.marginLeft = 20;
  fields.marginBottom = 0;
  fields.marginTopML = -3;
  EXPECT_EQ(titleBox(fields, {10, 10, 100, 30}, false), QRectF(30, 15, 75, 25));
  EXPECT_EQ(titleBox(fields, {10, 10, 100, 30}, true), QRectF(30, 7, 75, 31));
}

TEST(LayoutTitleTest, TakesTheLargestSizeThatFitsAndCentresIt) {
  const struct {
    const char* title;
    QRectF rect;
    int size;
    QRectF place;
  } rows[] = {
      // The box is 90 x 20: the height decides, at 21 it is too high.
      {"Save", {0, 0, 100, 30}, 20, {5, 5, 90, 20}},
      // The width decides: 12 letters of 7.5 at 15 fill the 90 points.
      {"Twelve chars", {0, 0, 100, 50}, 15, {5, 17.5, 90, 40}},
      // Not even 5 fits, so 4 is taken, and the box is lower than the text.
      {"Save", {0, 0, 100, 12}, 4, {5, 4, 90, 2}},
      {"An endless title that never ever fits", {0, 0, 40, 30}, 4, {5, 13, 30, 20}},
  };
  for (const auto& row : rows) {
    ImageButtonFields fields = withTitle(row.title);
    fields.colorText = Qt::red;
    layoutTitle(fields, row.rect, false, blockFont);
    EXPECT_EQ(fields.dictNoM,
              (TextAttributes{{TitleFont::Face::kSystem, row.size, false}, Qt::red, false, true}))
        << row.title;
    EXPECT_EQ(fields.rectTextNoM, row.place) << row.title;
    EXPECT_EQ(fields.sizeNoM, blockFont(fields.mTitle, fields.dictNoM.font)) << row.title;
    EXPECT_EQ(fields.sizeM, QSizeF()) << row.title;
  }
}

TEST(LayoutTitleTest, SearchesInLucidaGrandeAndDrawsInTheSystemFont) {
  ImageButtonFields fields = withTitle("Save");
  int searched = 0;
  layoutTitle(fields, {0, 0, 100, 30}, false, [&](const QString& text, const TitleFont& font) {
    if (font.face == TitleFont::Face::kLucidaGrande) ++searched;
    const double wider = font.face == TitleFont::Face::kLucidaGrande ? 1.0 : 2.0;
    return blockFont(text, font) * wider;
  });
  EXPECT_EQ(searched, 21 - 5 + 1);
  EXPECT_EQ(fields.dictNoM.font.size, 20);
  EXPECT_EQ(fields.sizeNoM, QSizeF(80, 40));
  EXPECT_EQ(fields.rectTextNoM, QRectF(5, -5, 90, 20));  // Moved up: the text is taller.
}

TEST(LayoutTitleTest, BreaksTheTitleForTwoLines) {
  ImageButtonFields fields = withTitle("Batch Process All");
  fields.isMultiLine = true;
  layoutTitle(fields, {0, 0, 100, 44}, true, blockFont);
  EXPECT_EQ(fields.mTitle, QStringLiteral("Batch\nProcess All"));
  EXPECT_EQ(fields.oTitle, QStringLiteral("Batch Process All"));
  EXPECT_TRUE(fields.dictM.wordWraps);
  EXPECT_EQ(fields.dictM.font.size, 16);  // 11 letters of 8 fill 88 of 90 points.
  EXPECT_EQ(fields.sizeM, QSizeF(88, 32));
  EXPECT_EQ(fields.rectTextM, QRectF(5, 6, 90, 40));
  EXPECT_EQ(fields.sizeNoM, QSizeF());
}

TEST(LayoutTitleTest, WhenEverySizeFitsTheLayoutStaysAsItWas) {
  ImageButtonFields fields = withTitle("A");
  layoutTitle(fields, {0, 0, 100, 30}, false, blockFont);
  const ImageButtonFields before = fields;
  layoutTitle(fields, {0, 0, 500, 500}, false, blockFont);
  EXPECT_EQ(fields.dictNoM, before.dictNoM);
  EXPECT_EQ(fields.sizeNoM, before.sizeNoM);
  EXPECT_EQ(fields.rectTextNoM, before.rectTextNoM);
  layoutTitle(fields, {0, 0, 500, 60}, false, blockFont);  // 50 points fit exactly.
  EXPECT_EQ(fields.dictNoM, before.dictNoM);
}

TEST(LayoutTitleTest, BoldTwentyNeedsItsFlagAndATitleBetween200And245Wide) {
  const struct {
    double width;
    bool makeBold;
    bool expected;
  } rows[] = {{200.0, true, false},
              {200.5, true, true},
              {244.5, true, true},
              {245.0, true, false},
              {220.0, false, false}};
  for (const auto& row : rows) {
    ImageButtonFields fields = withTitle("Title");
    fields.makeBoldFont = row.makeBold;
    layoutTitle(fields, {0, 0, 400, 30}, false, [&](const QString&, const TitleFont& font) {
      return QSizeF(font.size > 10 ? row.width : 10.0, font.size > 10 ? 21.0 : 10.0);
    });
    const TitleFont expected = row.expected ? TitleFont{TitleFont::Face::kLucidaGrande, 20, true}
                                            : TitleFont{TitleFont::Face::kSystem, 10, false};
    EXPECT_EQ(fields.dictNoM.font, expected) << row.width << row.makeBold;
  }
}

TEST(ChooseTitleTest, TwoLinesWinOnlyByArea) {
  ImageButtonFields fields = withTitle("Two words");
  fields.mTitle = QStringLiteral("Two\nwords");
  fields.rectTextNoM = {0, 0, 10, 10};
  fields.rectTextM = {0, 5, 10, 10};
  fields.sizeNoM = {40, 10};
  fields.sizeM = {20, 20};
  EXPECT_EQ(chooseTitle(fields, false).text, fields.oTitle);
  fields.sizeM = {20, 20.5};
  EXPECT_EQ(chooseTitle(fields, false).text, fields.mTitle);
  EXPECT_EQ(chooseTitle(fields, false).rect, QRectF(0, 5, 10, 10));
  EXPECT_EQ(chooseTitle(fields, true).rect, QRectF(1, 6, 10, 10));

  // A title of one word has no second layout, and does not move when it is pressed.
  fields.oTitle = QStringLiteral("Word");
  EXPECT_EQ(chooseTitle(fields, true).text, QStringLiteral("Word"));
  EXPECT_EQ(chooseTitle(fields, true).rect, QRectF(0, 0, 10, 10));
  fields.oTitle = QStringLiteral("Wo\nrd");
  EXPECT_TRUE(canBreakTitle(fields));
}

TEST(OlderLayoutTest, TriesTheSystemFontAndCentresRectText) {
  ImageButtonFields fields;
  fields.rectText = {3, 4, 50, 60};
  fields.colorText = Qt::blue;
  const TextAttributes attributes =
      layoutTitleOlder(fields, QStringLiteral("Save"), {40, 30}, blockFont);
  EXPECT_EQ(attributes,
            (TextAttributes{{TitleFont::Face::kSystem, 20, false}, Qt::blue, false, true}));
  EXPECT_EQ(fields.rectText, QRectF(3, 9, 50, 20));

  fields.rectText = {3, 4, 50, 60};
  EXPECT_EQ(layoutTitleOlder(fields, QStringLiteral("Save"), {500, 500}, blockFont),
            TextAttributes());
  EXPECT_EQ(layoutTitleOlder(fields, QStringLiteral("Save"), {5, 3}, blockFont).font.size, 4);
  EXPECT_EQ(fields.rectText, QRectF(3, 4, 50, 60));  // The text is higher than the rectangle.
}

}  // namespace
}  // namespace velmara
