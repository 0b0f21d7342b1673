#include "services/system_info.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <string_view>

#include "services/device_tree_serial.h"
#include "services/small_file.h"
#include "services/string_escaping.h"

namespace velmara {
namespace {

// What firmware says when nobody gave the machine a number, in lower case.
constexpr std::array<std::string_view, 8> kFillers = {"to be filled by o.e.m.",
                                                      "default string",
                                                      "not specified",
                                                      "not applicable",
                                                      "none",
                                                      "n/a",
                                                      "system serial number",
                                                      "0"};

bool isFiller(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](unsigned char byte) { return static_cast<char>(std::tolower(byte)); });
  return std::find(kFillers.begin(), kFillers.end(), text) != kFillers.end();
}

}  // namespace

std::optional<std::string> serialNumberFromDmi(const std::string& folder) {
  constexpr std::size_t kLargestFact = 4096;
  for (const char* name : {"/product_serial", "/board_serial"}) {
    const std::optional<std::string> bytes = readSmallFile(folder + name, kLargestFact);
    if (!bytes) continue;
    std::string serial = StringEscaping::trim(*bytes);
    if (!serial.empty() && !isFiller(serial)) return serial;
  }
  return std::nullopt;
}

std::optional<std::string> SystemInfo::getSerialNumber() {
  return serialNumberFromDmi("/sys/class/dmi/id");
}

std::string SystemInfo::computerSerialNumber() {
  return readDeviceTreeSerialNumber("/sys/firmware/devicetree/base");
}

}  // namespace velmara
