#include "services/system_info.h"

#include <gtest/gtest.h>

#include <filesystem>

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
  const std::string tooLong(100'000, 'x');
  for (const Case& it : std::initializer_list<Case>{
           {"PF3XYZ12\n", "BOARD1\n", "PF3XYZ12"},
           {"\n", " BOARD1 \n", "BOARD1"},
           {"To Be Filled By O.E.M.\n", "BOARD1\n", "BOARD1"},
           {"Default string\n", "None\n", std::nullopt},
           {nullptr, "BOARD1\n", "BOARD1"},
           {nullptr, nullptr, std::nullopt},
           {nullptr, tooLong.c_str(), std::nullopt},
       }) {
    const ScratchFolder folder;
    if (it.product != nullptr) writeFile(folder.file("product_serial"), it.product);
    if (it.board != nullptr) writeFile(folder.file("board_serial"), it.board);
    EXPECT_EQ(SystemInfo::getSerialNumber(folder.path().string()), it.expected);
  }
}

TEST(DeviceTreeSerial, IsTheSecondString) {
  using namespace std::string_literals;
  const ScratchFolder folder;
  for (const auto& [bytes, expected] : std::initializer_list<std::pair<std::string, std::string>>{
           {""s, ""},
           {"only"s, ""},
           {"only\0"s, ""},
           {"X1\0\0\0SERIAL\0more"s, "SERIAL"},
           {"X1\0SERIAL"s, "SERIAL"},
           {"\0\0SERIAL\0"s, "SERIAL"},
           {"\0\0\0"s, ""},
       }) {
    writeFile(folder.file("serial-number"), bytes);
    EXPECT_EQ(SystemInfo::computerSerialNumber(folder.path().string()), expected);
  }
}

TEST(DeviceTreeSerial, IsSearchedForInTheWholeTree) {
  const ScratchFolder folder;
  const std::string root = folder.path().string();
  EXPECT_EQ(SystemInfo::computerSerialNumber(folder.file("missing")), "");
  EXPECT_EQ(SystemInfo::computerSerialNumber(root), "null");
  std::filesystem::create_directories(folder.file("cpus/cpu0"));
  std::filesystem::create_directory_symlink(folder.path(), folder.file("cpus/circle"));
  writeFile(folder.file("cpus/cpu0/serial-number"), std::string("a\0deep", 6));
  EXPECT_EQ(SystemInfo::computerSerialNumber(root), "deep");
  std::filesystem::create_directory(folder.file("serial-number"));  // No data.
  EXPECT_EQ(SystemInfo::computerSerialNumber(root), "");
}

}  // namespace
}  // namespace velmara
