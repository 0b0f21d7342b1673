#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <random>
#include <vector>

#include "base/bitmap.h"

namespace velmara {

/// Numbers of a normal distribution, the same for the same seed.
inline std::vector<double> normalNumbers(std::size_t count, double deviation, unsigned seed) {
  std::mt19937 generator(seed);
  std::normal_distribution<double> distribution(0.0, deviation);
  std::vector<double> numbers(count);
  for (double& number : numbers) number = distribution(generator);
  return numbers;
}

/// A picture with a sky, edges and fine stripes, from dark to bright, `samples` a pixel; a last
/// sample beyond gray or RGB is alpha.
inline Bitmap scene(int width, int height, int samples = 3) {
  std::vector<std::uint8_t> bytes;
  const int channels = samples >= 3 ? 3 : 1;
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      const bool isStriped = (x / 40 + y / 40) % 4 == 3;
      const double base = 25.0 + 200.0 * x / width;
      for (int c = 0; c < samples; ++c) {
        double value = base + 15.0 * std::sin(0.02 * y + c);
        if ((x / 60 + y / 50) % 3 == 0) value = 230.0 - 0.7 * base - 20.0 * c;
        if (isStriped) value += 12.0 * std::sin(1.1 * x + 0.3 * y);
        if (c >= channels) value = (x * 7 + y * 3) % 256;
        bytes.push_back(static_cast<std::uint8_t>(std::clamp(value, 0.0, 255.0)));
      }
    }
  }
  return Bitmap::copyOf(bytes, width, height, samples);
}

/// The same with white noise, clipped and rounded. Alpha stays.
inline Bitmap withWhiteNoise(const Bitmap& clean, double deviation, unsigned seed = 1) {
  std::vector<std::uint8_t> bytes(clean.bytes().begin(), clean.bytes().end());
  const auto noise = normalNumbers(bytes.size(), deviation, seed);
  const auto samples = static_cast<std::size_t>(clean.samplesPerPixel());
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    if (clean.hasAlpha() && i % samples == samples - 1) continue;
    bytes[i] =
        static_cast<std::uint8_t>(std::clamp(std::nearbyint(bytes[i] + noise[i]), 0.0, 255.0));
  }
  return Bitmap::copyOf(bytes, clean.width(), clean.height(), clean.samplesPerPixel());
}

/// The same with noise as a camera's JPEG has it: smooth over some 2 pixels, twice as smooth in
/// colour.
// NOLINTNEXTLINE(readability-function-size): the loops of a filter are nested as deep as these.
inline Bitmap withSmoothNoise(const Bitmap& clean, double deviation, unsigned seed = 1) {
  const int width = clean.width();
  const int height = clean.height();
  const auto count = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
  const auto smooth = [&](unsigned seedOfPlane, int radius) {
    const auto white = normalNumbers(count, deviation, seedOfPlane);
    std::vector<double> plane(count);
    for (int y = 0; y < height; ++y) {
      for (int x = 0; x < width; ++x) {
        double sum = 0.0;
        double squares = 0.0;
        for (int dy = -radius; dy <= radius; ++dy) {
          for (int dx = -radius; dx <= radius; ++dx) {
            const double weight = std::exp(-2.0 * (dx * dx + dy * dy) / (radius * radius));
            const int at =
                std::clamp(y + dy, 0, height - 1) * width + std::clamp(x + dx, 0, width - 1);
            sum += weight * white[static_cast<std::size_t>(at)];
            squares += weight * weight;
          }
        }
        plane[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
              static_cast<std::size_t>(x)] = sum / std::sqrt(squares);
      }
    }
    return plane;
  };
  const auto brightness = smooth(seed, 2);
  const auto red = smooth(seed + 1, 4);
  const auto blue = smooth(seed + 2, 4);
  std::vector<std::uint8_t> bytes(clean.bytes().begin(), clean.bytes().end());
  for (std::size_t i = 0; i < count; ++i) {
    const double noise[3] = {brightness[i] + 0.4 * red[i], brightness[i],
                             brightness[i] + 0.4 * blue[i]};
    for (std::size_t c = 0; c < 3; ++c) {
      std::uint8_t& byte = bytes[3 * i + c];
      byte = static_cast<std::uint8_t>(std::clamp(std::nearbyint(byte + noise[c]), 0.0, 255.0));
    }
  }
  return Bitmap::copyOf(bytes, width, height, 3);
}

/// Peak signal-to-noise ratio in dB; 99 for equal pictures.
inline double psnrBetween(const Bitmap& a, const Bitmap& b) {
  double sum = 0.0;
  for (std::size_t i = 0; i < a.byteCount(); ++i) {
    const double difference = a.bytes()[i] - b.bytes()[i];
    sum += difference * difference;
  }
  const auto count = static_cast<double>(a.byteCount());
  return sum == 0.0 ? 99.0 : 10.0 * std::log10(255.0 * 255.0 * count / sum);
}

}  // namespace velmara
