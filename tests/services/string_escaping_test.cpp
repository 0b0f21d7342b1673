#include "services/string_escaping.h"

#include <gtest/gtest.h>

#include <QByteArray>
#include <QString>

#include <random>

#include "services/utf8.h"
#include "services/xml_entities.h"

namespace velmara {
namespace {

using namespace StringEscaping;  // NOLINT(google-build-using-namespace)

struct Case {
  std::string_view text;
  std::string_view expected;
};

TEST(XmlEntities, EscapeTable) {
  for (const auto& [text, expected] : std::initializer_list<Case>{
           {"", ""},
           {"plain", "plain"},
           {"a<b&c", "a&lt;b&amp;c"},
           {"\"'><&", "&quot;&#x27;&gt;&lt;&amp;"},
           {"&amp;", "&amp;amp;"},
           {"&&", "&amp;&amp;"},
           {"]]>", "]]&gt;"},
           {"\xF0\x9F\x93\xB7<\xC3\xA9", "\xF0\x9F\x93\xB7&lt;\xC3\xA9"},
       }) {
    EXPECT_EQ(xmlSimpleEscapeString(std::string(text)), expected);
    std::string inPlace(text);
    EXPECT_EQ(&xml::xmlSimpleEscape(inPlace), &inPlace);
    EXPECT_EQ(inPlace, expected);
  }
}

TEST(XmlEntities, ReportValueTable) {
  for (const auto& [text, expected] : std::initializer_list<Case>{
           {"a<b&c", "a(lessthan)b&amp;amp;c"},
           {"\"'>", "&quot;&#x27;&gt;"},
           {"&amp;", "&amp;amp;amp;"},
           {"<<", "(lessthan)(lessthan)"},
       }) {
    EXPECT_EQ(xmlSimpleEscapeStringNEW(std::string(text)), expected);
  }
}

TEST(XmlEntities, UnescapeTableWithItsQuirks) {
  for (const auto& [text, expected] : std::initializer_list<Case>{
           {"&amp;quot;", "\""},
           {"&amp;lt;", "<"},
           {"&amp;amp;lt;", "&amp;lt;"},
           {"&#x27;&#x39;&#x92;&#x96;", "''''"},
           {"&#x000D;", "\n"},
           {"&#x000D;&#x000A;", "\n\n"},
           {"&gt;&lt;&quot;", "><\""},
           {"&GT; &#X27; &nbsp;", "&GT; &#X27; &nbsp;"},
           {"&am&amp;p;", "&am&p;"},
       }) {
    EXPECT_EQ(xmlSimpleUnescapeString(std::string(text)), expected) << text;
  }
}

TEST(XmlEntities, UnescapingUndoesEscaping) {
  const std::string text = "<a href=\"x\">it's 3 > 2 && \xE2\x82\xAC</a>\r\n";
  EXPECT_EQ(xmlSimpleUnescapeString(xmlSimpleEscapeString(text)), text);
}

TEST(XmlEntities, AMegabyteOfHitsTakesTimeInProportion) {
  const std::string text(std::size_t{1} << 20, '&');
  EXPECT_EQ(xmlSimpleEscapeStringNEW(text).size(), text.size() * 9);
}

TEST(Trim, TakesWhiteSpaceOfEveryScriptOffBothEnds) {
  for (const auto& [text, expected] : std::initializer_list<Case>{
           {"", ""},
           {" \t\r\n\v\f", ""},
           {"  a b \n", "a b"},
           {"\xC2\xA0\xE3\x80\x80x\xE2\x80\xA8\xC2\x85", "x"},
           {"\xF0\x9F\x98\x80 ", "\xF0\x9F\x98\x80"},
           {"\xE2\x80\x8Bx", "\xE2\x80\x8Bx"},  // A zero-width space is no white space.
       }) {
    EXPECT_EQ(trim(text), expected);
  }
}

TEST(PercentCoding, Tables) {
  for (const auto& [text, expected] : std::initializer_list<Case>{
           {"a b/c", "a%20b%2Fc"},
           {"-._~azAZ09", "-._~azAZ09"},
           {"!*'();:@&=+$,/?%#[]", "%21%2A%27%28%29%3B%3A%40%26%3D%2B%24%2C%2F%3F%25%23%5B%5D"},
           {"\"<>\\^`{|}\x7f", "%22%3C%3E%5C%5E%60%7B%7C%7D%7F"},
           {"\xE2\x82\xAC", "%E2%82%AC"},
       }) {
    EXPECT_EQ(URLEncodedString(text), expected);
  }
  for (const auto& [text, expected] : std::initializer_list<Case>{
           {"a%20b+c", "a b+c"},
           {"%e2%82%AC", "\xE2\x82\xAC"},
           {"100%", "100%"},
           {"%4", "%4"},
           {"%zz%41", "%zzA"},
           {"%2541", "%41"},
       }) {
    EXPECT_EQ(URLDecodedString(text), expected);
  }
}

TEST(PercentCoding, GivesNothingForWhatIsNotUtf8) {
  for (const char* text : {"%FF", "%C3", "%C0%80", "%ED%A0%80", "%F5%80%80%80", "%E2%82x", "%80"}) {
    EXPECT_EQ(URLDecodedString(text), std::nullopt) << text;
  }
}

// Qt's own coding of RFC 3986 is the judge.
TEST(PercentCoding, AgreesWithAnIndependentCoderOnRandomUnicode) {
  std::mt19937 random(20240229);  // NOLINT(cert-msc51-cpp): the same texts in every run
  for (int round = 0; round < 2000; ++round) {
    QString text;
    for (auto length = random() % 40; length > 0; --length) {
      const char32_t widest[] = {0x7F, 0x7FF, 0xFFFF, 0x10FFFF};
      char32_t code = static_cast<char32_t>(random()) % (widest[random() % 4] + 1);
      if (code >= 0xD800 && code <= 0xDFFF) code = U'%';
      text += QString::fromUcs4(&code, 1);
    }
    const std::string utf8 = text.toStdString();
    const std::string encoded = URLEncodedString(utf8);
    ASSERT_EQ(encoded, text.toUtf8().toPercentEncoding().toStdString());
    ASSERT_EQ(URLDecodedString(encoded), utf8);
    ASSERT_EQ(utf16Length(utf8), static_cast<std::size_t>(text.size()));
    ASSERT_TRUE(isValidUtf8(utf8));
  }
}

TEST(Utf8, ValidityAndRepairAgreeWithAnIndependentDecoderOnRandomBytes) {
  std::mt19937 random(7);  // NOLINT(cert-msc51-cpp)
  const unsigned char likely[] = {0x41, 0x80, 0xBF, 0xC0, 0xC2, 0xE0, 0xED,
                                  0xA0, 0x9F, 0xF0, 0xF4, 0x8F, 0x90, 0xF5};
  for (int round = 0; round < 20000; ++round) {
    std::string bytes;
    for (auto length = random() % 6; length > 0; --length) {
      bytes.push_back(static_cast<char>(likely[random() % std::size(likely)]));
    }
    const QString decoded = QString::fromStdString(bytes);
    ASSERT_EQ(isValidUtf8(bytes), !decoded.contains(QChar::ReplacementCharacter));
    ASSERT_EQ(repairedUtf8(bytes), decoded.toStdString());
    ASSERT_EQ(utf16Length(bytes), static_cast<std::size_t>(decoded.size()));
  }
}

}  // namespace
}  // namespace velmara
