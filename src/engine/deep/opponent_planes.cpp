#include "engine/deep/opponent_planes.h"

#include <algorithm>
#include <new>
#include <utility>

namespace velmara {
namespace {

// The nearest whole number, halves to the even one; exact as long as |value| is below 2^22.
float rounded(float value) {
  constexpr float kRounder = 12582912.0F;  // 1.5 * 2^23
  return (value + kRounder) - kRounder;
}

std::int16_t toPlane(float value) {
  return static_cast<std::int16_t>(rounded(std::clamp(value, -32000.0F, 32000.0F)));
}

// Where a place beyond the end is mirrored to, the last sample not repeated.
int mirrored(int place, int size) {
  if (size == 1) return 0;
  const int period = 2 * (size - 1);
  place %= period;
  return place < size ? place : period - place;
}

}  // namespace

std::optional<OpponentPlanes> OpponentPlanes::allocate(int width, int height) {
  OpponentPlanes made;
  made.width = width;
  made.height = height;
  try {
    for (auto& plane : made.planes) plane.resize(made.pixels() + kSlack);
  } catch (const std::bad_alloc&) {
    return std::nullopt;
  }
  return made;
}

void toOpponent(const Bitmap& bitmap, OpponentPlanes& planes, int rowBegin, int rowEnd) {
  const int samples = bitmap.samplesPerPixel();
  const int green = samples >= 3 ? 1 : 0;
  const int blue = samples >= 3 ? 2 : 0;
  for (int y = rowBegin; y < rowEnd; ++y) {
    const std::uint8_t* row = bitmap.row(mirrored(y, bitmap.height()));
    const std::size_t first = static_cast<std::size_t>(y) * static_cast<std::size_t>(planes.width);
    for (int x = 0; x < planes.width; ++x) {
      const std::uint8_t* pixel =
          row + std::ptrdiff_t{samples} * (x < bitmap.width() ? x : mirrored(x, bitmap.width()));
      const float red = pixel[0];
      const float g = pixel[green];
      const float b = pixel[blue];
      for (std::size_t k = 0; k < 3; ++k) {
        planes.planes[k][first + static_cast<std::size_t>(x)] =
            toPlane((kOpponent[k][0] * red + kOpponent[k][1] * g + kOpponent[k][2] * b) *
                    OpponentPlanes::kOne);
      }
    }
  }
}

void fromOpponent(const OpponentPlanes& planes, const SampleTables& tables, const Bitmap& original,
                  std::uint8_t* samples, int rowBegin, int rowEnd) {
  constexpr float kMost = 255 * OpponentPlanes::kOne;
  const int perPixel = original.samplesPerPixel();
  const int channels = perPixel >= 3 ? 3 : 1;
  for (int y = rowBegin; y < rowEnd; ++y) {
    const std::size_t first = static_cast<std::size_t>(y) * static_cast<std::size_t>(planes.width);
    const std::uint8_t* in = original.row(y);
    std::uint8_t* out = samples + static_cast<std::size_t>(y) * original.rowBytes();
    for (int x = 0; x < original.width(); ++x, in += perPixel, out += perPixel) {
      const std::size_t i = first + static_cast<std::size_t>(x);
      for (int c = 0; c < channels; ++c) {
        float value = 0.0F;
        for (std::size_t k = 0; k < 3; ++k) value += kOpponent[k][c] * planes.planes[k][i];
        const auto entry = static_cast<std::size_t>(rounded(std::clamp(value, 0.0F, kMost)));
        out[c] = tables[static_cast<std::size_t>(c)][entry];
      }
      for (int c = channels; c < perPixel; ++c) out[c] = in[c];
    }
  }
}

bool cropTo(OpponentPlanes& planes, const PixelRect& rect) {
  if (rect == PixelRect{0, 0, planes.width, planes.height}) return true;
  auto cropped = OpponentPlanes::allocate(rect.width, rect.height);
  if (!cropped) return false;
  for (std::size_t k = 0; k < 3; ++k) {
    for (int y = 0; y < rect.height; ++y) {
      const std::int16_t* row =
          planes.planes[k].data() + std::ptrdiff_t{rect.y + y} * planes.width + rect.x;
      std::copy(row, row + rect.width, cropped->planes[k].begin() + std::ptrdiff_t{y} * rect.width);
    }
  }
  planes = std::move(*cropped);
  return true;
}

std::optional<OpponentPlanes> halved(const OpponentPlanes& planes) {
  auto made = OpponentPlanes::allocate(halvedSide(planes.width), halvedSide(planes.height));
  if (!made) return std::nullopt;
  for (std::size_t k = 0; k < 3; ++k) {
    std::int16_t* out = made->planes[k].data();
    for (int y = 0; y < made->height; ++y) {
      const std::int16_t* upper = planes.planes[k].data() +
                                  std::ptrdiff_t{std::min(2 * y, planes.height - 2)} * planes.width;
      const std::int16_t* lower = upper + planes.width;
      for (int x = 0; x < made->width; ++x) {
        const int at = std::min(2 * x, planes.width - 2);
        const int sum = upper[at] + upper[at + 1] + lower[at] + lower[at + 1];
        *out++ = static_cast<std::int16_t>((sum + 2) >> 2);
      }
    }
  }
  return made;
}

void addEnlargedDifference(const OpponentPlanes& filtered, const OpponentPlanes& plain,
                           OpponentPlanes& planes, int rowBegin, int rowEnd) {
  // A pixel lies a quarter of a coarse pixel from the centre of the nearest one.
  const auto near = [](int at, int size) { return std::min(at / 2, size - 1); };
  const auto far = [](int at, int size) {
    return std::clamp(at % 2 == 0 ? at / 2 - 1 : at / 2 + 1, 0, size - 1);
  };
  const int width = plain.width;
  for (std::size_t k = 0; k < 3; ++k) {
    const std::int16_t* f = filtered.planes[k].data();
    const std::int16_t* p = plain.planes[k].data();
    std::int16_t* out = planes.planes[k].data() + std::ptrdiff_t{rowBegin} * planes.width;
    for (int y = rowBegin; y < rowEnd; ++y) {
      const std::ptrdiff_t nearRow = std::ptrdiff_t{near(y, plain.height)} * width;
      const std::ptrdiff_t farRow = std::ptrdiff_t{far(y, plain.height)} * width;
      for (int x = 0; x < planes.width; ++x, ++out) {
        const int nearColumn = near(x, width);
        const int farColumn = far(x, width);
        const auto column = [&](int at) {
          return 3 * (f[nearRow + at] - p[nearRow + at]) + (f[farRow + at] - p[farRow + at]);
        };
        const int difference = (3 * column(nearColumn) + column(farColumn) + 8) >> 4;
        *out = static_cast<std::int16_t>(std::clamp(*out + difference, -32000, 32000));
      }
    }
  }
}

}  // namespace velmara
