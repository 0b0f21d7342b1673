#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "imaging/input_file.h"

namespace velmara {

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
