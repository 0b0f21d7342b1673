#include "session/recent_photos.h"

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <utility>

#include "platform/whole_file.h"

namespace velmara {
namespace {

constexpr std::size_t kMostPhotos = 10;
constexpr std::size_t kLargestFile =
    std::size_t{128} * 1024;  // Ten paths of the longest kind, and room.

}  // namespace

RecentPhotos::RecentPhotos(std::string file) : file_(std::move(file)) {}

// Each path ends in a zero, the one byte that none can hold.
std::vector<std::string> RecentPhotos::paths() const {
  std::vector<std::string> found;
  const auto bytes = readSmallFile(file_, kLargestFile);
  if (!bytes) return found;
  std::string_view rest = *bytes;
  while (found.size() < kMostPhotos) {
    const std::size_t end = rest.find('\0');
    if (end == std::string_view::npos) break;
    const std::string_view path = rest.substr(0, end);
    rest.remove_prefix(end + 1);
    if (path.starts_with('/') && std::ranges::find(found, path) == found.end()) {
      found.emplace_back(path);
    }
  }
  return found;
}

Status RecentPhotos::add(const std::string& path) const {
  std::error_code failure;
  const std::string absolute = std::filesystem::absolute(path, failure).lexically_normal().string();
  if (failure) return Error{failure.message()};
  std::vector<std::string> all = paths();
  std::erase(all, absolute);
  all.insert(all.begin(), absolute);
  if (all.size() > kMostPhotos) all.resize(kMostPhotos);
  return write(all);
}

Status RecentPhotos::clear() const {
  std::error_code failure;
  std::filesystem::remove(file_, failure);
  if (failure) return Error{failure.message()};
  return Done{};
}

Status RecentPhotos::write(const std::vector<std::string>& paths) const {
  std::error_code failure;
  std::filesystem::create_directories(std::filesystem::path(file_).parent_path(), failure);
  if (failure) return Error{failure.message()};
  std::vector<std::uint8_t> bytes;
  for (const std::string& path : paths) {
    bytes.insert(bytes.end(), path.begin(), path.end());
    bytes.push_back(0);
  }
  return replaceFile(file_, bytes);
}

}  // namespace velmara
