#include "services/email_address.h"

#include <gtest/gtest.h>

#include <chrono>
#include <string>

namespace velmara {
namespace {

TEST(EmailAddress, FollowsThePattern) {
  using namespace std::string_view_literals;
  struct Case {
    std::string_view address;
    bool valid;
  };
  for (const auto& [address, valid] : std::initializer_list<Case>{
           {"a@b.co"sv, true},
           {"first.last+tag@sub.example-site.org"sv, true},
           {"!#$%&'*+/=?^_`{|}~-@x.y"sv, true},
           {"\"quoted @ name\"@x.y"sv, false},  // A blank needs a backslash.
           {"\"quoted\\ name\"@x.y"sv, true},
           {"\"@\"@x.y"sv, true},
           {"a@[1.2.3.4]"sv, true},
           {"a@[255.255.255.256]"sv, false},
           {"a@[1.2.3.tag:any]"sv, true},
           {"a@[1.2.3.tag:]]"sv, true},  // The last range takes the bracket in.
           {"a@[1.2.3.tag:\\ ]"sv, true},
           {"a@[1.2.3.tag: ]"sv, false},
           {"1@2.3"sv, true},
           {"A@b.co"sv, false},  // The form makes it lower-case first.
           {"a@b"sv, false},
           {"a@-b.co"sv, false},
           {"a@b-.co"sv, false},
           {"a@b..co"sv, false},
           {"a@b.co."sv, false},
           {".a@b.co"sv, false},
           {"a..b@b.co"sv, false},
           {"a b@b.co"sv, false},
           {"@b.co"sv, false},
           {"a@b.co\n"sv, false},
           {" a@b.co"sv, false},
           {"a@b.co\0x"sv, false},
           {"\xC3\xA9@b.co"sv, false},
           {"a@b.\xC3\xA9"sv, false},
           {""sv, false},
       }) {
    EXPECT_EQ(validateEmail(address), valid) << address;
  }
}

TEST(EmailAddress, HostileTextsOf64KiBTakeNoTime) {
  constexpr std::size_t kLength = 65536;
  const auto repeated = [](const std::string& piece) {
    std::string text;
    while (text.size() < kLength) text += piece;
    return text;
  };
  validateEmail("compiles@the.pattern");
  for (const std::string& text : {
           "a@[1.2.3.x:" + repeated("\\"),  // Exponentially many readings.
           "a@[1.2.3.x:" + repeated("\\a\\"),
           "a@" + repeated("a"),
           "a@" + repeated("a-"),
           "a@" + repeated("a."),
           repeated("a."),
           repeated("a"),
           std::string("\"").append(repeated("\\\"")),
           repeated("@"),
       }) {
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_FALSE(validateEmail(text)) << text.substr(0, 20);
    const std::chrono::duration<double, std::milli> taken =
        std::chrono::steady_clock::now() - begin;
    EXPECT_LT(taken.count(), 50.0) << text.substr(0, 20);
  }
  EXPECT_TRUE(validateEmail(repeated("a.").insert(0, "a@") + "b"));
}

}  // namespace
}  // namespace velmara
