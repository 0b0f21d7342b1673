#pragma once

#include <cstdint>
#include <optional>
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

/// Reads a file byte by byte, a block at a time.
class ByteStream {
 public:
  explicit ByteStream(const InputFile& file) : file_(file) {}

  /// The next byte; nothing at the end of the file.
  std::optional<std::uint8_t> next() {
    if (at_ == block_.size()) {
      offset_ += static_cast<std::int64_t>(block_.size());
      block_ = file_.read(offset_, kBlockBytes);
      at_ = 0;
      if (block_.empty()) return std::nullopt;
    }
    return block_[at_++];
  }

  /// Passes over bytes; false if the file ends before.
  bool skip(std::int64_t count) {
    for (; count > 0; --count) {
      if (!next()) return false;
    }
    return true;
  }

  /// How many bytes have been read.
  std::int64_t position() const { return offset_ + static_cast<std::int64_t>(at_); }

 private:
  static constexpr std::size_t kBlockBytes = std::size_t{1} << 16U;

  const InputFile& file_;
  std::vector<std::uint8_t> block_;
  std::size_t at_ = 0;
  std::int64_t offset_ = 0;
};

}  // namespace velmara
