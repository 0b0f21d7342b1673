#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "base/result.h"

namespace velmara {

/// An ordinary file open for reading, closed at the end.
class InputFile {
 public:
  /// Opens a path; what is no ordinary file (a folder, a pipe, a device) is refused without being
  /// waited for, an empty file likewise. The errors do not repeat the path.
  static Result<InputFile> open(const std::string& path);

  InputFile(InputFile&& other) noexcept;
  InputFile& operator=(InputFile&&) = delete;
  InputFile(const InputFile&) = delete;
  InputFile& operator=(const InputFile&) = delete;
  ~InputFile();

  int descriptor() const { return descriptor_; }
  std::int64_t size() const { return size_; }

  /// The bytes from an offset on, fewer than asked for at the end of the file. The position of the
  /// descriptor is not used.
  std::vector<std::uint8_t> read(std::int64_t offset, std::size_t count) const;

 private:
  InputFile(int descriptor, std::int64_t size) : descriptor_(descriptor), size_(size) {}

  int descriptor_;
  std::int64_t size_;
};

}  // namespace velmara
