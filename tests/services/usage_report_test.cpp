#include "services/usage_report.h"

#include <gtest/gtest.h>

#include "support/run_program.h"

namespace velmara {
namespace {

using namespace testing_support;

const std::string kList =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
    "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
    "<plist version=\"1.0\">\n<dict>\n\t<key>a&amp;</key>\n\t<array>\n\t\t<integer>1</integer>\n"
    "\t\t<string>&lt;x&gt; \xC3\xA9</string>\n\t</array>\n\t<key>e</key>\n\t<dict/>\n"
    "\t<key>z</key>\n\t<true/>\n</dict>\n</plist>\n";

TEST(UsageReport, IsWrittenAnewFromBothForms) {
  EXPECT_EQ(rewritePropertyList("<plist><dict><key>a&amp;</key><array><integer>1</integer>"
                                "<string>&lt;x&gt; \xC3\xA9</string></array><key>e</key><dict/>"
                                "<key>z</key><true/></dict></plist>"),
            kList);
  // The binary form comes from another writer.
  const ScratchFolder folder;
  const auto made =
      runProgram({"python3", "-c",
                  "import plistlib, sys\n"
                  "content = {'a&': [1, '<x> \\u00e9'], 'e': {}, 'z': True}\n"
                  "plistlib.dump(content, open(sys.argv[1], 'wb'), fmt=plistlib.FMT_BINARY)",
                  folder.file("list")});
  ASSERT_EQ(made.exitCode, 0) << made.errors;
  ASSERT_TRUE(contentsOf(folder.file("list")).starts_with("bplist00"));
  EXPECT_EQ(readUsageReport(folder.file("list")), kList);
}

// A binary list of a dictionary and arrays below it, each of which refers `copies` times to the
// next.
std::string nested(int levels, int copies) {
  std::string list = "bplist00";
  std::string table;
  const auto wide = [](std::size_t number) {
    return std::string{static_cast<char>(number >> 16U), static_cast<char>(number >> 8U),
                       static_cast<char>(number)};
  };
  std::size_t objects = 0;
  const auto object = [&](const std::string& bytes) {
    table += wide(list.size());
    list += bytes;
    ++objects;
  };
  object("\xD1" + wide(1) + wide(2));
  object("\x51k");
  for (int level = 0; level < levels; ++level) {
    std::string array(1, static_cast<char>(0xA0 + copies));
    for (int copy = 0; copy < copies; ++copy) array += wide(objects + 1);
    object(array);
  }
  object("\x09");
  const std::string tableAt = std::string(5, '\0') + wide(list.size());
  return list + table + std::string(6, '\0') + "\x03\x03" + std::string(5, '\0') + wide(objects) +
         std::string(8, '\0') + tableAt;
}

TEST(UsageReport, GivesNothingForAnythingElse) {
  std::string deep = "<plist><dict><key>a</key>";
  for (int level = 0; level < 100000; ++level) deep += "<array>";
  std::string entities = "<!DOCTYPE plist [<!ENTITY a0 \"aaaaaaaaaa\">";
  for (int level = 1; level < 9; ++level) {
    const std::string below = "&a" + std::to_string(level - 1) + ";";
    entities += "<!ENTITY a" + std::to_string(level) + " \"";
    for (int count = 0; count < 10; ++count) entities += below;
    entities += "\">";
  }
  entities += "]><plist><dict><key>k</key><string>&a8;</string></dict></plist>";
  ASSERT_TRUE(rewritePropertyList(nested(3, 2)));
  std::string loop = nested(1, 1);
  loop[8 + 7 + 2 + 3] = 2;  // The array holds itself.
  std::string tooMany = nested(1, 1);
  tooMany[tooMany.size() - 24] = '\x7F';
  for (const std::string& text :
       {std::string(), std::string("text"), std::string("bplist00\xD1\x01"), deep, entities, loop,
        nested(100000, 1), nested(40, 2), nested(3, 2).substr(0, 40), tooMany + "x",
        std::string("<plist><array/></plist>"),
        std::string("<plist><dict><string>a</string></dict></plist>"),
        std::string("<plist><dict><key>a</key><script/></dict></plist>"),
        std::string("<plist><dict/><dict/></plist>"), std::string("<plist><dict>"),
        std::string("<html/>")}) {
    EXPECT_EQ(rewritePropertyList(text), std::nullopt) << text.substr(0, 60);
  }
  // Whatever stands in a byte, the reader comes to an end.
  const std::string sound = nested(3, 2);
  for (std::size_t at = 8; at < sound.size(); ++at) {
    for (const char byte : {'\x00', '\x7F', '\xFF', '\x0F', '\xAF', '\xDF', '\x5F'}) {
      std::string broken = sound;
      broken[at] = byte;
      rewritePropertyList(broken);
    }
  }
}

}  // namespace
}  // namespace velmara
