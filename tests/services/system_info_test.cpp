#include "services/system_info.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "services/device_tree_serial.h"
#include "support/scratch_folder.h"

namespace velmara {
namespace {

using testing_support::ScratchFolder;
using testing_support::writeFile;

TEST(DmiSerial, TakesTheProductsBeforeTheBoardsAndNoFiller) {
  struct Case {
    const char* product;
    const char* board;
    std::optional<std::string> expected;
  };
  for (const Case& it : std::initializer_list<Case>{
           {"PF3XYZ12\n", "BOARD1\n", "PF3XYZ12"},
           {"\n", " BOARD1 \n", "BOARD1"},
           {"To Be Filled By O.E.M.\n", "BOARD1\n", "BOARD1"},
           {"Default string\n", "None\n", std::nullopt},
           {nullptr, "BOARD1\n", "BOARD1"},
           {nullptr, nullptr, std::nullopt},
       }) {
    const ScratchFolder folder;
    if (it.product != nullptr) writeFile(folder.file("product_serial"), it.product);
    if (it.board != nullptr) writeFile(folder.file("board_serial"), it.board);
    EXPECT_EQ(serialNumberFromDmi(folder.path().string()), it.expected);
  }
}

TEST(DmiSerial, IgnoresWhatIsNoSmallFile) {
  const ScratchFolder folder;
  std::filesystem::create_directory(folder.file("product_serial"));
  writeFile(folder.file("board_serial"), std::string(100000, 'x'));
  EXPECT_EQ(serialNumberFromDmi(folder.path().string()), std::nullopt);
}

TEST(DeviceTreeSerial, IsTheSecondString) {
  using namespace std::string_view_literals;
  EXPECT_EQ(serialNumberFromDeviceTree(std::nullopt), "null");
  struct Case {
    std::string_view bytes;
    std::string_view expected;
  };
  for (const auto& [bytes, expected] : std::initializer_list<Case>{
           {""sv, ""},
           {"only"sv, ""},
           {"only\0"sv, ""},
           {"X1\0\0\0SERIAL\0more"sv, "SERIAL"},
           {"X1\0SERIAL"sv, "SERIAL"},
           {"\0\0SERIAL\0"sv, "SERIAL"},
           {"\0\0\0"sv, ""},
       }) {
    EXPECT_EQ(serialNumberFromDeviceTree(bytes), expected);
  }
}

TEST(DeviceTreeSerial, IsSearchedForInTheWholeTree) {
  const ScratchFolder folder;
  EXPECT_EQ(readDeviceTreeSerialNumber(folder.file("missing")), "");
  EXPECT_EQ(readDeviceTreeSerialNumber(folder.path().string()), "null");

  std::filesystem::create_directories(folder.file("cpus/cpu0"));
  std::filesystem::create_directory_symlink(folder.path(), folder.file("cpus/circle"));
  writeFile(folder.file("cpus/cpu0/serial-number"), std::string("a\0deep", 6));
  EXPECT_EQ(readDeviceTreeSerialNumber(folder.path().string()), "deep");
  writeFile(folder.file("serial-number"), std::string("a\0top", 5));
  EXPECT_EQ(readDeviceTreeSerialNumber(folder.path().string()), "top");
}

TEST(DeviceTreeSerial, IsEmptyWhenThePropertyIsNoData) {
  const ScratchFolder folder;
  std::filesystem::create_directory(folder.file("serial-number"));
  EXPECT_EQ(readDeviceTreeSerialNumber(folder.path().string()), "");
}

}  // namespace
}  // namespace velmara
