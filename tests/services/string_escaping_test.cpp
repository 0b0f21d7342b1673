#include <gtest/gtest.h>

#include "services/text.h"

namespace velmara {
namespace {

using namespace StringEscaping;  // NOLINT(google-build-using-namespace)

template <typename Operation>
void expectAll(Operation operation,
               std::initializer_list<std::pair<std::string_view, std::string_view>> cases) {
  for (const auto& [text, expected] : cases) {
    EXPECT_EQ(operation(std::string(text)), expected) << text;
  }
}

TEST(XmlEntities, FollowTheirTables) {
  expectAll(xmlSimpleEscapeString, {{"", ""},
                                    {"plain", "plain"},
                                    {"a<b&c", "a&lt;b&amp;c"},
                                    {"\"'><&&", "&quot;&#x27;&gt;&lt;&amp;&amp;"},
                                    {"&amp;", "&amp;amp;"},
                                    {"\xF0\x9F\x93\xB7<\xC3\xA9", "\xF0\x9F\x93\xB7&lt;\xC3\xA9"}});
  expectAll(xmlSimpleEscapeStringNEW, {{"a<b&c", "a(lessthan)b&amp;amp;c"},
                                       {"\"'>", "&quot;&#x27;&gt;"},
                                       {"&amp;", "&amp;amp;amp;"},
                                       {"<<", "(lessthan)(lessthan)"}});
  expectAll(xmlSimpleUnescapeString, {{"&amp;quot;", "\""},
                                      {"&amp;lt;", "<"},
                                      {"&amp;amp;lt;", "&amp;lt;"},
                                      {"&#x27;&#x39;&#x92;&#x96;", "''''"},
                                      {"&#x000D;&#x000A;", "\n\n"},
                                      {"&gt;&lt;&quot;", "><\""},
                                      {"&GT; &#X27; &nbsp;", "&GT; &#X27; &nbsp;"},
                                      {"&am&amp;p;", "&am&p;"}});
  std::string inPlace = "<";
  EXPECT_EQ(&xml::xmlSimpleEscape(inPlace), &inPlace);
  EXPECT_EQ(inPlace, "&lt;");
}

TEST(Trim, TakesWhiteSpaceOfEveryScriptOffBothEnds) {
  expectAll(trim, {{" \t\r\n\v\f", ""},
                   {"  a b \n", "a b"},
                   {"\xC2\xA0\xE3\x80\x80x\xE2\x80\xA8\xC2\x85", "x"},
                   {"\xF0\x9F\x98\x80 ", "\xF0\x9F\x98\x80"},
                   {"\xE2\x80\x8Bx", "\xE2\x80\x8Bx"}});  // A zero-width space is no white space.
}

TEST(PercentCoding, FollowsItsTables) {
  expectAll(URLEncodedString,
            {{"a b/c", "a%20b%2Fc"},
             {"-._~azAZ09", "-._~azAZ09"},
             {"!*'();:@&=+$,/?%#[]", "%21%2A%27%28%29%3B%3A%40%26%3D%2B%24%2C%2F%3F%25%23%5B%5D"},
             {"\"<>\\^`{|}\x7f\xE2\x82\xAC", "%22%3C%3E%5C%5E%60%7B%7C%7D%7F%E2%82%AC"}});
  expectAll(URLDecodedString, {{"a%20b+c", "a b+c"},
                               {"%e2%82%AC", "\xE2\x82\xAC"},
                               {"100%", "100%"},
                               {"%4", "%4"},
                               {"%zz%41", "%zzA"},
                               {"%2541", "%41"}});
  for (const char* text : {"%FF", "%C3", "%C0%80", "%ED%A0%80", "%F5%80%80%80", "%E2%82x", "%80"}) {
    EXPECT_EQ(URLDecodedString(text), std::nullopt) << text;
  }
}

}  // namespace
}  // namespace velmara
