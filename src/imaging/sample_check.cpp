#include <array>
#include <optional>

#include "base/bitmap.h"
#include "imaging/file_checks.h"

namespace velmara {
namespace {

constexpr unsigned kMostCodes = 4096;
constexpr unsigned kLongestCode = 12;

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

/// The codes of a frame, least significant bit first, out of its chain of blocks.
class CodeReader {
 public:
  explicit CodeReader(ByteStream& stream) : stream_(stream) {}

  /// The next code of so many bits; nothing where the blocks end.
  std::optional<unsigned> next(unsigned bits) {
    while (have_ < bits) {
      if (left_ == 0) {
        left_ = stream_.next().value_or(0);
        if (left_ == 0) return std::nullopt;
      }
      const auto byte = stream_.next();
      if (!byte) return std::nullopt;
      --left_;
      pending_ |= unsigned{*byte} << have_;
      have_ += 8;
    }
    const unsigned code = pending_ & ((1U << bits) - 1U);
    pending_ >>= bits;
    have_ -= bits;
    return code;
  }

 private:
  ByteStream& stream_;
  unsigned left_ = 0;
  unsigned pending_ = 0;
  unsigned have_ = 0;
};

/// How many pixels a frame's codes stand for, up to `enough` of them.
std::int64_t countPixels(ByteStream& stream, std::int64_t enough) {
  const unsigned rootBits = stream.next().value_or(0);
  if (rootBits < 1 || rootBits >= kLongestCode) return 0;
  const unsigned clear = 1U << rootBits;
  std::array<std::uint32_t, kMostCodes> length{};
  for (unsigned code = 0; code < clear; ++code) length[code] = 1;

  CodeReader codes(stream);
  std::int64_t pixels = 0;
  unsigned bits = rootBits + 1;
  unsigned next = clear + 2;
  std::uint32_t before = 0;  // pixels of the code before, 0 after a clear
  while (pixels < enough) {
    const auto code = codes.next(bits);
    if (!code || *code == clear + 1) break;
    if (*code == clear) {
      bits = rootBits + 1;
      next = clear + 2;
      before = 0;
      continue;
    }
    const bool isNew = before != 0 && *code == next;
    if (*code > clear && *code >= next && !isNew) break;
    const std::uint32_t count = isNew ? before + 1 : length[*code];
    if (before != 0 && next < kMostCodes) {
      length[next++] = before + 1;
      if (next == 1U << bits && bits < kLongestCode) ++bits;
    }
    before = count;
    pixels += count;
  }
  return pixels;
}

/// Passes over a chain of blocks.
bool skipBlocks(ByteStream& stream) {
  for (;;) {
    const auto size = stream.next();
    if (!size || !stream.skip(*size)) return false;
    if (*size == 0) return true;
  }
}

std::int64_t tableBytes(std::uint8_t flags) {
  return (flags & 0x80U) != 0 ? std::int64_t{3} << ((flags & 7U) + 1U) : 0;
}

std::int64_t nextShort(ByteStream& stream) {
  const std::int64_t low = stream.next().value_or(0);
  return low + 256 * std::int64_t{stream.next().value_or(0)};
}

struct PnmHeader {
  int kind = 0;
  std::int64_t width = 0;
  std::int64_t height = 0;
  std::int64_t largest = 1;

  bool isPlain() const { return kind <= 3; }
  bool isBits() const { return kind == 1 || kind == 4; }
  std::int64_t samples() const { return width * height * (kind == 3 || kind == 6 ? 3 : 1); }
};

bool isSpace(std::uint8_t byte) {
  return byte == ' ' || (byte >= '\t' && byte <= '\r');
}

/// The next number, after white space and comments; the one byte behind it is passed over too.
std::optional<std::int64_t> nextNumber(ByteStream& stream) {
  constexpr std::int64_t kMost = 1'000'000'000;
  std::optional<std::int64_t> number;
  for (auto byte = stream.next(); byte; byte = stream.next()) {
    if (*byte >= '0' && *byte <= '9') {
      number = number.value_or(0) * 10 + (*byte - '0');
      if (*number > kMost) return std::nullopt;
    } else if (number) {
      return number;
    } else if (*byte == '#') {
      while (byte && *byte != '\n') byte = stream.next();
      if (!byte) return std::nullopt;
    } else if (!isSpace(*byte)) {
      return std::nullopt;
    }
  }
  return number;
}

std::optional<PnmHeader> readHeader(ByteStream& stream) {
  PnmHeader header;
  stream.next();
  header.kind = stream.next().value_or('0') - '0';
  const auto width = nextNumber(stream);
  const auto height = nextNumber(stream);
  const auto largest = header.isBits() ? std::optional<std::int64_t>(1) : nextNumber(stream);
  if (!width || !height || !largest || *width == 0 || *height == 0 || *largest == 0 ||
      *largest > 65535) {
    return std::nullopt;
  }
  header.width = *width;
  header.height = *height;
  header.largest = *largest;
  return header;
}

Error damaged() {
  return {"the PNM file is damaged or cut short"};
}

}  // namespace

Status checkGifFrame(const InputFile& file) {
  constexpr std::int64_t kBeforeFlags = 10;  // signature, width, height
  const Error damaged{"the GIF file is damaged or cut short"};
  ByteStream stream(file);
  if (!stream.skip(kBeforeFlags)) return damaged;
  const std::uint8_t flags = stream.next().value_or(0);
  if (!stream.skip(2 + tableBytes(flags))) return damaged;
  for (auto mark = stream.next(); mark; mark = stream.next()) {
    if (*mark == 0x21) {  // an extension, its label and its blocks
      if (!stream.skip(1) || !skipBlocks(stream)) return damaged;
    } else if (*mark == 0x2c) {  // the frame
      stream.skip(4);
      const std::int64_t width = nextShort(stream);
      const std::int64_t pixels = width * nextShort(stream);
      stream.skip(tableBytes(stream.next().value_or(0)));
      return pixels > 0 && countPixels(stream, pixels) >= pixels ? Done{} : Status(damaged);
    } else if (*mark != 0) {
      return damaged;
    }
  }
  return damaged;
}

Status checkPnmHeader(const InputFile& file) {
  ByteStream stream(file);
  const auto header = readHeader(stream);
  if (!header) return damaged();
  // Pictures that are too large are refused by their size, in other words.
  if (header->isPlain() || !isAllowedBitmapSize(header->width, header->height, 4)) return Done{};
  const std::int64_t bytes = header->isBits() ? (header->width + 7) / 8 * header->height
                                              : header->samples() * (header->largest > 255 ? 2 : 1);
  return file.size() - stream.position() < bytes ? Status(damaged()) : Done{};
}

Status checkPnmSamples(const InputFile& file) {
  ByteStream stream(file);
  const auto header = readHeader(stream);
  if (!header) return damaged();
  if (!header->isPlain()) return Done{};
  std::int64_t missing = header->samples();
  if (header->isBits()) {
    // The digits of a plain bitmap need no space between them.
    for (auto byte = stream.next(); byte && missing > 0; byte = stream.next()) {
      if (*byte == '0' || *byte == '1') --missing;
    }
  } else {
    while (missing > 0 && nextNumber(stream)) --missing;
  }
  return missing > 0 ? Status(damaged()) : Done{};
}

}  // namespace velmara
