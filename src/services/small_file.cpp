#include "services/small_file.h"

#include <filesystem>
#include <fstream>
#include <system_error>

namespace velmara {

std::optional<std::string> readSmallFile(const std::string& path, std::size_t largest) {
  std::error_code error;
  // Anything else, a pipe for instance, could make the read wait for ever.
  if (!std::filesystem::is_regular_file(path, error)) return std::nullopt;
  std::ifstream file(path, std::ios::binary);
  std::string bytes;
  char piece[4096];
  while (file.read(piece, sizeof(piece)) || file.gcount() > 0) {
    bytes.append(piece, static_cast<std::size_t>(file.gcount()));
    if (bytes.size() > largest) return std::nullopt;
  }
  if (!file.eof()) return std::nullopt;
  return bytes;
}

}  // namespace velmara
