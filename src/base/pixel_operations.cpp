#include "base/pixel_operations.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <utility>

namespace velmara {
namespace {

// The same pixels with another count of samples, each written from the one it was.
template <typename Write>
Bitmap repacked(const Bitmap& bitmap, int samples, Write write) {
  auto packed = BitmapBuilder::allocate(bitmap.width(), bitmap.height(), samples);
  if (!packed) return {};
  const int width = bitmap.width(), step = bitmap.samplesPerPixel();
  for (int y = 0; y < bitmap.height(); ++y) {
    const std::uint8_t* in = bitmap.row(y);
    std::uint8_t* out = packed->row(y);
    for (int x = 0; x < width; ++x, in += step, out += samples) write(in, out);
  }
  return std::move(*packed).finish();
}

// Mirrors a row's ends into the frame beside it.
void mirrorEnds(std::uint8_t* row, int width, int samples, int border) {
  const auto pixelBytes = static_cast<std::size_t>(samples);
  const auto pixel = [&](std::int64_t x) { return row + (x + border) * std::int64_t{samples}; };
  for (int x = 1; x <= border; ++x) {
    std::memcpy(pixel(-x), pixel(mirroredIndex(-std::int64_t{x}, width)), pixelBytes);
    const std::int64_t right = std::int64_t{width} - 1 + x;
    std::memcpy(pixel(right), pixel(mirroredIndex(right, width)), pixelBytes);
  }
}

}  // namespace

Bitmap withoutAlpha(const Bitmap& bitmap) {
  if (!bitmap.isValid() || !bitmap.hasAlpha()) return bitmap;
  const int colours = bitmap.samplesPerPixel() - 1;
  return repacked(bitmap, colours, [colours](const std::uint8_t* in, std::uint8_t* out) {
    for (int c = 0; c < colours; ++c) out[c] = overBlack(in[c], in[colours]);
  });
}

void logAlphaRemoval(const LogSink& log) {
  if (log) log("Utils removeAlphaChannelFromImage");
}

Bitmap removeAlpha(const Bitmap& bitmap, const LogSink& log) {
  logAlphaRemoval(log);
  Bitmap opaque = withoutAlpha(bitmap);
  if (!opaque.isValid() && log) log("Error in removeAlphaChannelFromImage");
  return opaque;
}

Bitmap asRgba(const Bitmap& bitmap) {
  const int samples = bitmap.samplesPerPixel();
  if (!bitmap.isValid() || samples == 4) return bitmap;
  const int green = samples == 3 ? 1 : 0;
  const int blue = samples == 3 ? 2 : 0;
  return repacked(bitmap, 4, [=](const std::uint8_t* in, std::uint8_t* out) {
    out[0] = in[0];
    out[1] = in[green];
    out[2] = in[blue];
    out[3] = samples == 2 ? in[1] : std::uint8_t{255};
  });
}

std::int64_t mirroredIndex(std::int64_t index, std::int64_t count) {
  const std::int64_t period = 2 * count;
  std::int64_t position = index % period;
  if (position < 0) position += period;
  return position < count ? position : period - 1 - position;
}

PictureRows rowsOf(const Bitmap& bitmap) {
  return {
      bitmap.width(), bitmap.height(), bitmap.samplesPerPixel(),
      [bitmap](int y, std::uint8_t* out) { std::memcpy(out, bitmap.row(y), bitmap.rowBytes()); }};
}

Bitmap withMirroredBorder(const Bitmap& bitmap, int border) {
  if (!bitmap.isValid()) return {};
  auto frame = MirroredFrame::allocate(rowsOf(bitmap), border);
  return frame ? std::move(*frame).finish() : Bitmap();
}

std::optional<MirroredFrame> MirroredFrame::allocate(PictureRows picture, int border) {
  if (border < 0) return std::nullopt;
  auto framed = BitmapBuilder::allocate(picture.width + 2 * std::int64_t{border},
                                        picture.height + 2 * std::int64_t{border}, picture.samples);
  if (!framed) return std::nullopt;
  return MirroredFrame(std::move(picture), border, std::move(*framed));
}

MirroredFrame::MirroredFrame(PictureRows picture, int border, BitmapBuilder framed)
    : picture_(std::move(picture)), border_(border), framed_(std::move(framed)) {}

void MirroredFrame::fillTo(int end) {
  const auto& [width, height, samples, writeRow] = picture_;
  for (; filled_ < std::min(end, framed_.height()); ++filled_) {
    const int y = static_cast<int>(mirroredIndex(std::int64_t{filled_} - border_, height));
    std::uint8_t* row = framed_.row(filled_);
    if (y + border_ < filled_) {
      std::memcpy(row, framed_.row(y + border_), framed_.rowBytes());
      continue;
    }
    writeRow(y, row + static_cast<std::ptrdiff_t>(border_) * samples);
    mirrorEnds(row, width, samples, border_);
  }
}

// The rows above the picture show its first ones, as many as the border has.
int MirroredFrame::pictureRowsUpTo(int end) const {
  return end <= 0 ? 0 : std::min(picture_.height, std::max(border_, end - border_));
}

Bitmap MirroredFrame::finish() && {
  fillTo(framed_.height());
  return std::move(framed_).finish();
}

void logBorder(int width, int height, const LogSink& log) {
  if (!log) return;
  log("Utils addBorderToImage");
  log("input Image Size {" + std::to_string(width) + ", " + std::to_string(height) + "}");
}

}  // namespace velmara
