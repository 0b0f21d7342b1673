#include "imaging/pnm_check.h"

#include "base/bitmap.h"
#include "imaging/byte_stream.h"

namespace velmara {
namespace {

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
