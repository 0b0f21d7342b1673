#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <unistd.h>
#include <vector>

namespace velmara::testing_support {

/// A new, empty folder that is removed with everything in it at the end of a test.
class ScratchFolder {
 public:
  explicit ScratchFolder(
      const std::filesystem::path& base = std::filesystem::temp_directory_path()) {
    std::string name = (base / "velmara-test-XXXXXX").string();
    path_ = ::mkdtemp(name.data());
  }
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;
  ~ScratchFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }

  std::string file(const std::string& name) const { return (path_ / name).string(); }
  const std::filesystem::path& path() const { return path_; }

  /// The names in the folder, hidden ones too, in no particular order.
  std::vector<std::string> names() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(path_)) {
      names.push_back(entry.path().filename().string());
    }
    return names;
  }

 private:
  std::filesystem::path path_;
};

/// Where a folder lies in memory, for tests that would only wait for the disk.
inline std::filesystem::path inMemory() {
  return ::access("/dev/shm", W_OK) == 0 ? "/dev/shm" : std::filesystem::temp_directory_path();
}

inline std::string contentsOf(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

inline void writeFile(const std::string& path, const std::string& contents) {
  std::ofstream(path, std::ios::binary) << contents;
}

}  // namespace velmara::testing_support
