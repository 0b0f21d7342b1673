#include "services/system_info.h"

#include <QByteArray>

#include <algorithm>
#include <array>
#include <filesystem>
#include <system_error>

#include "platform/whole_file.h"
#include "services/text.h"

namespace velmara {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kLargestFact = std::size_t{1} << 16;

// What firmware says when nobody gave the machine a number, in any case.
constexpr std::array<const char*, 8> kFillers = {"to be filled by o.e.m.",
                                                 "default string",
                                                 "not specified",
                                                 "not applicable",
                                                 "none",
                                                 "n/a",
                                                 "system serial number",
                                                 "0"};

bool isFiller(const std::string& text) {
  return std::any_of(kFillers.begin(), kFillers.end(),
                     [&](const char* filler) { return qstricmp(filler, text.c_str()) == 0; });
}

// The property's file: the root's own before one further down.
fs::path findSerialNumber(const fs::path& root) {
  constexpr const char* kName = "serial-number";
  std::error_code error;
  if (fs::exists(root / kName, error)) return root / kName;
  // Links are not followed, so there are no circles.
  fs::recursive_directory_iterator entry(root, fs::directory_options::skip_permission_denied,
                                         error);
  for (; !error && entry != fs::end(entry); entry.increment(error)) {
    if (entry->path().filename() == kName) return entry->path();
  }
  return {};
}

}  // namespace

std::optional<std::string> SystemInfo::getSerialNumber(const std::string& folder) {
  for (const char* name : {"/product_serial", "/board_serial"}) {
    const std::optional<std::string> bytes = readSmallFile(folder + name, kLargestFact);
    if (!bytes) continue;
    std::string serial = StringEscaping::trim(*bytes);
    if (!serial.empty() && !isFiller(serial)) return serial;
  }
  return std::nullopt;
}

std::string SystemInfo::computerSerialNumber(const std::string& root) {
  std::error_code error;
  if (!fs::is_directory(root, error)) return {};
  const fs::path path = findSerialNumber(root);
  if (path.empty()) return "null";
  const std::string bytes = readSmallFile(path.string(), kLargestFact).value_or("");
  const std::size_t endOfFirst = std::min(bytes.find('\0'), bytes.size());
  const std::size_t second = std::min(bytes.find_first_not_of('\0', endOfFirst), bytes.size());
  return bytes.substr(second, bytes.find('\0', second) - second);
}

}  // namespace velmara
