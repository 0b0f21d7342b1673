#include "widgets/breakable_text.h"

#include <gtest/gtest.h>

namespace velmara {
namespace {

TEST(BreakableTextTest, BreaksLongWordsOnlyAndBetweenWholeCharacters) {
  const QString spaced = QStringLiteral("Twenty words are no long word, however many there are");
  EXPECT_EQ(breakableText(spaced), spaced);
  EXPECT_EQ(breakableText(QString(30, u'n')), QString(30, u'n'));
  EXPECT_EQ(breakableText(QString(32, u'n')), QString(30, u'n') + QStringLiteral("\u200bn\u200bn"));
  EXPECT_EQ(breakableText(QString(30, u'n') + QStringLiteral(" n")),
            QString(30, u'n') + QStringLiteral(" n"));
  // An emoji of two halves, and a letter with an accent of its own.
  EXPECT_EQ(breakableText(QString(29, u'n') + QStringLiteral("\U0001F600e\u0301")),
            QString(29, u'n') + QStringLiteral("\U0001F600\u200be\u0301"));
}

}  // namespace
}  // namespace velmara
