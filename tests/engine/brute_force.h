#pragma once

#include <cmath>

#include "base/bitmap.h"
#include "engine/pictures.h"

namespace velmara {

inline int mirrored(int i, int n) {
  while (i < 0 || i >= n) i = i < 0 ? -1 - i : 2 * n - 1 - i;
  return i;
}

// The picture's mirrored surroundings, and the oblique view of it that one-channel filtering takes:
// sample (x, y) of the framed picture seen as one long row that starts at the frame's corner.
struct World {
  const Bitmap& picture;
  int frame;

  int sample(int x, int y, int c) const {
    const int fullWidth = picture.width() + 2 * frame;
    const int position = y * fullWidth + x;
    if (position < 0) return 0;
    x = position % fullWidth - frame;
    y = position / fullWidth - frame;
    return picture.pixel(mirrored(x, picture.width()), mirrored(y, picture.height()))[c];
  }
};

inline double weight(double d, double sigma, int channels) {
  if (d == 0.0) return 1.0;
  const double excess = d - (sigma + sigma) * sigma;
  if (excess <= 0.0) return 1.0;
  const double w = std::exp(excess * ((1.0 / (sigma * sigma)) * (-1.0 / channels)));
  return w < 0.001 || d >= channels * 65536.0 - 1.0 ? 0.0 : w;
}

/// Non-local means written down a second time, without a padded copy and without shared code: the
/// packed output samples of a 1- or 3-sample picture (t <= s, both within the picture's reach).
// NOLINTNEXTLINE(readability-function-size): nested as its definition is.
inline Bytes bruteForce(const Bitmap& picture, int t, int s, double sigma) {
  const int channels = picture.samplesPerPixel();
  const bool oblique = channels == 1;
  const World world{picture, s / 2 + t / 2};
  const double reciprocal = 1.0 / (t * t);
  Bytes out;
  for (int y = 0; y < picture.height(); ++y) {
    for (int x = 0; x < picture.width(); ++x) {
      std::vector<double> weights;
      for (int l = 0; l < s; ++l) {
        for (int k = 0; k < s; ++k) {
          long e = 0;
          for (int n = 0; n < t; ++n) {
            const int slip = oblique ? 2 * t * n : 0;
            for (int m = 0; m < t; ++m) {
              for (int c = 0; c < channels; ++c) {
                const long difference = world.sample(x + k + m - slip, y + l + n, c) -
                                        world.sample(x + s / 2 + m - slip, y + s / 2 + n, c);
                e += difference * difference;
              }
            }
          }
          const double d = t == 0 ? 0.0 : std::floor(static_cast<double>(e) * reciprocal);
          weights.push_back(weight(d, sigma, channels));
        }
      }
      double total = 0.0;
      for (std::size_t i = weights.size(); i-- > 0;) total += weights[i];
      for (int c = 0; c < channels; ++c) {
        double sum = 0.0;
        std::size_t i = 0;
        for (int l = 0; l < s; ++l) {
          const int slip = oblique ? 2 * s * l : 0;
          for (int k = 0; k < s; ++k, ++i) {
            sum +=
                world.sample(x + t / 2 + k - slip, y + t / 2 + l, c) * (weights[i] * (1.0 / total));
          }
        }
        out.push_back(static_cast<std::uint8_t>(sum));
      }
    }
  }
  return out;
}

}  // namespace velmara
