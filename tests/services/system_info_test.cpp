#include "services/system_info.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "support/scratch_folder.h"

namespace velmara {
namespace {

using namespace std::string_literals;
using namespace testing_support;

TEST(DmiSerial, TakesTheProductsBeforeTheBoardsAndNoFiller) {
  const struct {
    const char *product, *board;
    std::optional<std::string> expected;
  } rows[] = {
      {"PF3XYZ12\n", "BOARD1\n", "PF3XYZ12"},
      {"\n", " BOARD1 \n", "BOARD1"},
      {"To Be Filled By O.E.M.\n", "BOARD1\n", "BOARD1"},
      {"Default string\n", "None\n", std::nullopt},
      {nullptr, "BOARD1\n", "BOARD1"},
      {nullptr, nullptr, std::nullopt},
      {nullptr, "TOO LONG", std::nullopt},
  };
  for (const auto& row : rows) {
    const ScratchFolder folder;
    if (row.product != nullptr) writeFile(folder.file("product_serial"), row.product);
    if (row.board != nullptr) {
      writeFile(folder.file("board_serial"),
                row.board == "TOO LONG"s ? std::string(100'000, 'x') : row.board);
    }
    EXPECT_EQ(SystemInfo::getSerialNumber(folder.path().string()), row.expected);
  }
}

TEST(DeviceTreeSerial, IsTheSecondStringOfTheFirstInTheTree) {
  const ScratchFolder folder;
  const std::string root = folder.path().string();
  EXPECT_EQ(SystemInfo::computerSerialNumber(folder.file("missing")), "");
  EXPECT_EQ(SystemInfo::computerSerialNumber(root), "null");
  std::filesystem::create_directories(folder.file("cpus/cpu0"));
  std::filesystem::create_directory_symlink(folder.path(), folder.file("cpus/circle"));
  writeFile(folder.file("cpus/cpu0/serial-number"), "a\0deep"s);
  EXPECT_EQ(SystemInfo::computerSerialNumber(root), "deep");
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
    EXPECT_EQ(SystemInfo::computerSerialNumber(root), expected);
  }
  std::filesystem::remove(folder.file("serial-number"));
  std::filesystem::create_directory(folder.file("serial-number"));  // No data.
  EXPECT_EQ(SystemInfo::computerSerialNumber(root), "");
}

}  // namespace
}  // namespace velmara
