#include "engine/noise_level.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <new>

#include "base/pixel_operations.h"
#include "engine/row_kernels.h"

namespace velmara {
namespace {

constexpr std::uint64_t kFileHeader = 8;
constexpr std::int64_t kFewestPixels = 10000;

// What a picture takes: its samples, a directory of twelve required fields (thirteen with alpha),
// the two resolutions, and the bit depths where they do not fit into their field.
std::uint64_t pictureLength(const Bitmap& bitmap) {
  constexpr std::uint64_t kCountAndLink = 2 + 4;
  constexpr std::uint64_t kField = 12;
  constexpr std::uint64_t kResolutions = 16;
  const auto samples = static_cast<std::uint64_t>(bitmap.samplesPerPixel());
  const std::uint64_t fields = bitmap.hasAlpha() ? 13 : 12;
  const std::uint64_t bitDepths = samples > 2 ? 2 * samples : 0;
  return kCountAndLink + fields * kField + kResolutions + bitDepths + bitmap.byteCount();
}

// Rows that hold the first `count` bytes of a picture.
std::int64_t rowsHolding(std::int64_t count, std::int64_t width, std::int64_t samples) {
  const std::int64_t rowBytes = width * samples;
  return (count + rowBytes - 1) / rowBytes;
}

// Rows to encode so that the decoded bytes that are compared come out as if the whole picture had
// been encoded: JPEG works in blocks of 8 or 16 rows, and smoothing between blocks looks one block
// further.
std::int64_t rowsToEncode(std::int64_t rowsCompared) {
  constexpr std::int64_t kTallestBlock = 16;
  return (rowsCompared + kTallestBlock - 1) / kTallestBlock * kTallestBlock + kTallestBlock;
}

// The length of the median-filtered copy as TIFF; its canvas need not be there for that.
std::uint64_t tiffLengthOfCanvas(const Bitmap& bitmap) {
  return tiffLength(Bitmap(bitmap.storage(), bitmap.width(), bitmap.height(), 4));
}

// The top of the filtered copy, at least as much as is compared.
Bitmap filteredCopy(const Image& image, std::int64_t compared,
                    const EngineEnvironment& environment) {
  const Bitmap& bitmap = image.bitmap();
  const std::uint64_t ratio = tiffLength(image) / tiffLengthOfCanvas(bitmap);
  if (ratio == 1) {
    const std::int64_t rows = rowsHolding(compared, bitmap.width(), 4);
    return asRgba(medianFiltered(bitmap, static_cast<int>(rows)));
  }
  constexpr std::int64_t kSamplesOfJpeg = 3;
  const std::int64_t rows = rowsToEncode(rowsHolding(compared, bitmap.width(), kSamplesOfJpeg));
  const Bitmap top = asRgba(
      medianFiltered(bitmap, static_cast<int>(std::min<std::int64_t>(rows, bitmap.height()))));
  if (!top.isValid() || !environment.recompressJpeg) return {};
  return environment.recompressJpeg(Image(top, image.profile()), static_cast<float>(ratio))
      .bitmap();
}

double cannotMeasure(const EngineEnvironment& environment) {
  if (environment.log) environment.log("getPSNRofImage: no filtered copy to compare with");
  return 0.0;
}

// A sum of whole numbers in single precision, each addition rounded before the next, which makes a
// chain where every addition waits for the one before.
//
// From 2^24 on, while the sum stays between two powers of two, it is a whole number of units of its
// last bit. What a number adds to it then depends on the number and, where the exact result lies
// halfway, on the sum being an even or odd count of units. So it is enough to try what a stretch of
// numbers adds to the least even sum and to the least odd one, several stretches side by side.
class SinglePrecisionSum {
 public:
  static constexpr std::size_t kStretches = 8, kStretch = 256, kBlock = kStretches * kStretch;

  float value() const { return sum_; }
  void add(std::span<const float> numbers) {
    if (numbers.size() == kBlock && sum_ >= 16777216.0F && addStretches(numbers.data())) return;
    for (const float number : numbers) sum_ += number;
  }

 private:
  // False, and nothing is added, if the sum would reach the next power of two.
  bool addStretches(const float* numbers) {
    const float least = std::ldexp(1.0F, std::ilogb(sum_));
    const float unit = std::ldexp(least, -23);
    float even[kStretches];
    float odd[kStretches];
    std::fill_n(even, kStretches, least);
    std::fill_n(odd, kStretches, least + unit);
    for (std::size_t i = 0; i < kStretch; ++i) {
      for (std::size_t k = 0; k < kStretches; ++k) {
        even[k] += numbers[k * kStretch + i];
        odd[k] += numbers[k * kStretch + i];
      }
    }
    float sum = sum_;
    for (std::size_t k = 0; k < kStretches; ++k) {
      const bool isOdd = std::fmod(sum / unit, 2.0F) == 1.0F;
      sum += isOdd ? odd[k] - (least + unit) : even[k] - least;
      if (!(std::max({sum, even[k], odd[k]}) < 2.0F * least)) return false;
    }
    sum_ = sum;
    return true;
  }

  float sum_ = 0.0F;
};

}  // namespace

std::uint64_t tiffLength(const Bitmap& bitmap) {
  return kFileHeader + pictureLength(bitmap);
}

std::uint64_t tiffLength(const Image& image) {
  std::uint64_t length = kFileHeader;
  for (const Bitmap& bitmap : image.representations()) length += pictureLength(bitmap);
  return length;
}

double noiseLevel(const Image& image, const EngineEnvironment& environment) {
  const Bitmap& bitmap = image.bitmap();
  const std::int64_t compared = std::int64_t{bitmap.height()} * bitmap.width();
  if (compared < kFewestPixels) return 0.0;
  const Bitmap copy = filteredCopy(image, compared, environment);
  const auto count = static_cast<std::size_t>(compared);
  if (!copy.isValid() || copy.byteCount() < count) return cannotMeasure(environment);
  return peakSignalToNoiseRatio(bitmap.bytes().first(count), copy.bytes().first(count), count);
}

int rowsMeasuredOfCanvas(int width, int height) {
  // The median of the last compared row looks at the one below.
  const std::int64_t rows = rowsHolding(std::int64_t{width} * height, width, 4) + 1;
  return static_cast<int>(std::min<std::int64_t>(rows, height));
}

// The canvas's fourth samples are all the same and would add nothing to the sum.
double noiseLevelOfCanvas(const Bitmap& rgb, const EngineEnvironment& environment) {
  const std::int64_t compared = std::int64_t{rgb.height()} * rgb.width();
  if (compared < kFewestPixels) return 0.0;
  const std::int64_t rows = rowsHolding(compared, rgb.width(), 4);
  const Bitmap copy = medianFiltered(rgb, static_cast<int>(rows));
  if (!copy.isValid()) {
    cannotMeasure(environment);
    throw std::bad_alloc();
  }
  const auto count = static_cast<std::size_t>(compared);
  const std::size_t colours = count / 4 * 3 + count % 4;
  return peakSignalToNoiseRatio(rgb.bytes().first(colours), copy.bytes().first(colours), count);
}

double peakSignalToNoiseRatio(std::span<const std::uint8_t> a, std::span<const std::uint8_t> b,
                              std::size_t count) {
  SinglePrecisionSum sum;
  std::array<float, SinglePrecisionSum::kBlock> squares;
  for (std::size_t begin = 0; begin < a.size(); begin += squares.size()) {
    const std::size_t block = std::min(squares.size(), a.size() - begin);
    for (std::size_t i = 0; i < block; ++i) {
      const int difference = a[begin + i] - b[begin + i];
      squares[i] = static_cast<float>(difference * difference);
    }
    sum.add({squares.data(), block});
  }
  const float mean = sum.value() / static_cast<float>(count);
  return static_cast<double>(20.0F * std::log10(255.0F / std::sqrt(mean)));
}

}  // namespace velmara
