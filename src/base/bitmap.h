#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <utility>

namespace velmara {

/// One decoded picture: 8-bit samples, interleaved, rows from top to bottom with no gap between
/// them, so row y starts at byte y * width * samplesPerPixel.
///
/// Samples per pixel: 1 gray, 2 gray and alpha, 3 red green blue, 4 red green blue alpha. Alpha is
/// straight (colours are not multiplied by it). A default-made bitmap is not valid and has no
/// samples. Copies share the samples, which never change, so copying is cheap and any thread may
/// read.
class Bitmap {
 public:
  /// The most pixels a bitmap may have; whatever claims more is refused before anything is
  /// allocated.
  static constexpr std::int64_t kMaxPixels = std::int64_t{1} << 29;

  Bitmap() = default;
  /// Wraps samples that hold width * height * samplesPerPixel bytes.
  Bitmap(std::shared_ptr<const std::uint8_t[]> samples, int width, int height, int samplesPerPixel)
      : samples_(std::move(samples)),
        width_(width),
        height_(height),
        samplesPerPixel_(samplesPerPixel) {}

  /// A copy of `bytes`; not valid if the sizes are not positive, beyond kMaxPixels or do not match
  /// the number of bytes.
  static Bitmap copyOf(std::span<const std::uint8_t> bytes, int width, int height,
                       int samplesPerPixel);

  /// Whether there is a picture.
  bool isValid() const { return samples_ != nullptr; }
  /// In pixels.
  int width() const { return width_; }
  int height() const { return height_; }
  /// 1 to 4, as above.
  int samplesPerPixel() const { return samplesPerPixel_; }
  /// Whether the last sample of a pixel is alpha.
  bool hasAlpha() const { return samplesPerPixel_ == 2 || samplesPerPixel_ == 4; }

  /// All samples, with no gap between rows, and how many bytes a row and the whole are.
  std::size_t rowBytes() const {
    return static_cast<std::size_t>(width_) * static_cast<std::size_t>(samplesPerPixel_);
  }
  std::size_t byteCount() const { return rowBytes() * static_cast<std::size_t>(height_); }
  std::span<const std::uint8_t> bytes() const { return {samples_.get(), byteCount()}; }
  /// The first sample of row y, 0 being the top one.
  const std::uint8_t* row(int y) const {
    return samples_.get() + static_cast<std::size_t>(y) * rowBytes();
  }
  /// The first sample of pixel (x, y), counted from the top-left corner.
  const std::uint8_t* pixel(int x, int y) const {
    return row(y) + static_cast<std::size_t>(x) * static_cast<std::size_t>(samplesPerPixel_);
  }
  /// The shared samples, for whoever wants to keep them alive without a copy.
  const std::shared_ptr<const std::uint8_t[]>& storage() const { return samples_; }

 private:
  std::shared_ptr<const std::uint8_t[]> samples_;
  int width_ = 0;
  int height_ = 0;
  int samplesPerPixel_ = 0;
};

/// Whether a picture of this size may be allocated: positive sides, 1 to 4 samples, at most
/// Bitmap::kMaxPixels pixels.
bool isAllowedBitmapSize(std::int64_t width, std::int64_t height, int samplesPerPixel);

/// Whether no pixel lets anything through.
bool isOpaque(const Bitmap& bitmap);

/// Samples being written, before they become a Bitmap.
class BitmapBuilder {
 public:
  /// Room for a picture, its samples not set; nothing if the size is not allowed
  /// (isAllowedBitmapSize) or the memory is not to be had.
  static std::optional<BitmapBuilder> allocate(std::int64_t width, std::int64_t height,
                                               int samplesPerPixel);

  /// As the bitmap's. The samples may be written until finish().
  int width() const { return bitmap_.width(); }
  int height() const { return bitmap_.height(); }
  int samplesPerPixel() const { return bitmap_.samplesPerPixel(); }
  std::size_t rowBytes() const { return bitmap_.rowBytes(); }
  std::span<std::uint8_t> bytes() { return {samples_, bitmap_.byteCount()}; }
  std::uint8_t* row(int y) { return samples_ + static_cast<std::size_t>(y) * rowBytes(); }

  /// The bitmap it will be, for readers that know which samples are set by now.
  Bitmap unfinished() const { return bitmap_; }
  /// Turns the samples into a bitmap without a copy; the builder is used up.
  Bitmap finish() && { return std::move(bitmap_); }

 private:
  BitmapBuilder(Bitmap bitmap, std::uint8_t* samples)
      : bitmap_(std::move(bitmap)), samples_(samples) {}

  Bitmap bitmap_;
  std::uint8_t* samples_;  ///< Those of the bitmap.
};

}  // namespace velmara
