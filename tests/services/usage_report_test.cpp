#include "services/usage_report.h"

#include <gtest/gtest.h>

namespace velmara {
namespace {

const std::string kHead =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
    "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
    "<plist version=\"1.0\">\n";

TEST(UsageReport, IsWrittenAnewWithItsKeysInOrder) {
  EXPECT_EQ(rewritePropertyList(kHead + "<dict><key>z</key><true/><key>a&amp;</key><array>"
                                        "<integer>1</integer><string>&lt;x&gt;</string></array>"
                                        "<key>e</key><dict/></dict></plist>"),
            kHead +
                "<dict>\n\t<key>a&amp;</key>\n\t<array>\n\t\t<integer>1</integer>\n"
                "\t\t<string>&lt;x&gt;</string>\n\t</array>\n\t<key>e</key>\n\t<dict/>\n"
                "\t<key>z</key>\n\t<true/>\n</dict>\n</plist>\n");
}

TEST(UsageReport, GivesNothingForAnythingElse) {
  std::string deep = "<plist><dict><key>a</key>";
  for (int level = 0; level < 100000; ++level) deep += "<array>";
  for (const std::string& text :
       {std::string(), std::string("text"), std::string("bplist00\xD1\x01"), deep,
        std::string("<plist><array/></plist>"), std::string("<plist><dict><key>a</key></dict>"),
        std::string("<plist><dict><string>a</string></dict></plist>"),
        std::string("<plist><dict><key>a</key><script/></dict></plist>"),
        std::string("<plist><dict/><dict/></plist>"), std::string("<plist><dict>"),
        std::string("<html/>")}) {
    EXPECT_EQ(rewritePropertyList(text), std::nullopt) << text.substr(0, 60);
  }
}

// Entities that multiply each other are the classic way to fill a reader's memory.
TEST(UsageReport, RefusesEntitiesThatMultiply) {
  std::string text = "<!DOCTYPE plist [<!ENTITY a0 \"aaaaaaaaaa\">";
  for (int level = 1; level < 9; ++level) {
    const std::string below = "&a" + std::to_string(level - 1) + ";";
    text += "<!ENTITY a" + std::to_string(level) + " \"";
    for (int count = 0; count < 10; ++count) text += below;
    text += "\">";
  }
  text += "]><plist><dict><key>k</key><string>&a8;</string></dict></plist>";
  EXPECT_EQ(rewritePropertyList(text), std::nullopt);
}

}  // namespace
}  // namespace velmara
