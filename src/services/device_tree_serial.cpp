#include "services/device_tree_serial.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

#include "services/small_file.h"

namespace velmara {
namespace {

constexpr std::size_t kLargestProperty = std::size_t{1} << 16;

// The property's file: the root's own before one further down.
std::filesystem::path findProperty(const std::filesystem::path& root) {
  constexpr const char* kName = "serial-number";
  std::error_code error;
  if (std::filesystem::exists(root / kName, error)) return root / kName;
  // Links are not followed, so there are no circles.
  std::filesystem::recursive_directory_iterator entry(
      root, std::filesystem::directory_options::skip_permission_denied, error);
  for (; !error && entry != std::filesystem::end(entry); entry.increment(error)) {
    if (entry->path().filename() == kName) return entry->path();
  }
  return {};
}

}  // namespace

std::string serialNumberFromDeviceTree(std::optional<std::string_view> property) {
  if (!property) return "null";
  const std::string_view bytes = *property;
  const std::size_t endOfFirst = std::min(bytes.find('\0'), bytes.size());
  const std::size_t second = std::min(bytes.find_first_not_of('\0', endOfFirst), bytes.size());
  const std::size_t end = std::min(bytes.find('\0', second), bytes.size());
  return std::string(bytes.substr(second, end - second));
}

std::string readDeviceTreeSerialNumber(const std::string& root) {
  std::error_code error;
  if (!std::filesystem::is_directory(root, error)) return {};
  const std::filesystem::path path = findProperty(root);
  if (path.empty()) return serialNumberFromDeviceTree(std::nullopt);
  const std::optional<std::string> bytes = readSmallFile(path.string(), kLargestProperty);
  return bytes ? serialNumberFromDeviceTree(*bytes) : std::string();
}

}  // namespace velmara
