// What the deep method does to pictures, without the program around it:
//   deep_quality white DEVIATION PICTURE...        noise is added, 8 bits
//   deep_quality pairs NOISY MEAN NOISY MEAN ...   photos and what they should look like
//   deep_quality self PICTURE...                   clean pictures, which should stay as they are
//   deep_quality time WIDTH HEIGHT THREADS [DEVIATION [PARTWIDTH PARTHEIGHT]]
//                                               DEVIATION 0 stands for a camera's noise; the part
//                                               is in the middle
// With VELMARA_DEEP_OUT=FOLDER the results are written there as PPM.
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <random>
#include <string>
#include <vector>

#include "engine/deep/deep_denoise.h"
#include "engine/thread_queue.h"
#include "imaging/image_reader.h"

namespace velmara {
namespace {

Bitmap read(const std::string& path) {
  const Result<Image> image = readImage(path);
  if (!image) {
    std::fprintf(stderr, "%s: %s\n", path.c_str(), image.error().c_str());
    std::exit(1);
  }
  return image->bitmap();
}

Bitmap withNoise(const Bitmap& clean, double deviation, unsigned seed) {
  std::mt19937 generator(seed);
  std::normal_distribution<double> noise(0.0, deviation);
  std::vector<std::uint8_t> samples(clean.bytes().begin(), clean.bytes().end());
  for (std::uint8_t& sample : samples) {
    sample = static_cast<std::uint8_t>(
        std::clamp(std::nearbyint(sample + noise(generator)), 0.0, 255.0));
  }
  return Bitmap::copyOf(samples, clean.width(), clean.height(), clean.samplesPerPixel());
}

// In dB; 99 for equal pictures.
double psnr(const Bitmap& a, const Bitmap& b) {
  double sum = 0.0;
  for (std::size_t i = 0; i < a.byteCount(); ++i) {
    const double difference = a.bytes()[i] - b.bytes()[i];
    sum += difference * difference;
  }
  return sum == 0.0 ? 99.0
                    : 10.0 * std::log10(255.0 * 255.0 * static_cast<double>(a.byteCount()) / sum);
}

std::string nameOf(const std::string& path) {
  return path.substr(path.find_last_of('/') + 1);
}

void save(const std::string& name, const Bitmap& bitmap) {
  const char* folder = std::getenv("VELMARA_DEEP_OUT");
  if (folder == nullptr) return;
  std::ofstream file(std::string(folder) + "/" + name + ".ppm", std::ios::binary);
  file << "P6\n" << bitmap.width() << ' ' << bitmap.height() << "\n255\n";
  file.write(reinterpret_cast<const char*>(bitmap.bytes().data()),
             static_cast<std::streamsize>(bitmap.byteCount()));
}

struct Table {
  double before = 0.0, after = 0.0, worst = 99.0, error = 0.0;
  int count = 0;
};

void compare(const std::string& name, const Bitmap& noisy, const Bitmap& clean, Table& table) {
  static ThreadQueue workers(1);
  JobControl control;
  const auto begin = std::chrono::steady_clock::now();
  const DeepNoise noise = measureNoise(noisy);
  const auto measured = std::chrono::steady_clock::now();
  const auto result = denoiseDeeply(noisy, noise, {1.0F, &workers, 2, false}, control);
  const std::chrono::duration<double> took = std::chrono::steady_clock::now() - measured;
  const std::chrono::duration<double> measuring = measured - begin;
  if (!result) std::exit(1);
  const double before = psnr(noisy, clean);
  const double after = psnr(*result, clean);
  std::printf("%-20s %6.2f -> %6.2f  %s  dark %5.2f middle %5.2f bright %5.2f  %.2f + %.2f s\n",
              name.c_str(), before, after,
              noise.isWhite ? "white" : (noise.sizes > 1 ? "photo" : "JPEG"),
              noise.deviation[1][64], noise.deviation[1][128], noise.deviation[1][192],
              measuring.count(), took.count());
  save(name, *result);
  table.before += before;
  table.after += after;
  table.worst = std::min(table.worst, after - before);
  ++table.count;
}

void timeOne(int width, int height, int threads, double deviation, int partWidth, int partHeight) {
  std::vector<std::uint8_t> samples(static_cast<std::size_t>(width) *
                                    static_cast<std::size_t>(height) * 3);
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < 3 * width; ++x) {
      samples[static_cast<std::size_t>(y) * static_cast<std::size_t>(3 * width) +
              static_cast<std::size_t>(x)] =
          static_cast<std::uint8_t>(128 + 60 * std::sin(x * 0.013) +
                                    40 * std::sin(y * 0.17 + x * 0.04));
    }
  }
  const Bitmap clean = Bitmap::copyOf(samples, width, height, 3);
  const Bitmap noisy = withNoise(clean, deviation == 0.0 ? 5.0 : deviation, 1);
  ThreadQueue workers(threads);
  JobControl control;
  DeepNoise noise = measureNoise(noisy);
  const auto begin = std::chrono::steady_clock::now();
  noise = measureNoise(noisy);
  const auto measured = std::chrono::steady_clock::now();
  if (deviation == 0.0) {
    noise.isWhite = false;
    noise.sizes = 3;
  }
  const std::clock_t processor = std::clock();
  DeepRequest request{1.0F, &workers, threads, false};
  request.part = {(width - partWidth) / 2, (height - partHeight) / 2, partWidth, partHeight};
  const auto result = denoiseDeeply(noisy, noise, request, control);
  const auto end = std::chrono::steady_clock::now();
  const double used = static_cast<double>(std::clock() - processor) / CLOCKS_PER_SEC;
  const std::chrono::duration<double> measuring = measured - begin;
  const std::chrono::duration<double> took = end - measured;
  const double megapixels = partWidth * 1e-6 * partHeight;
  std::printf(
      "%.2f MP, %d threads: measuring %.2f s, filtering %.2f s (%.2f s of a processor a "
      "megapixel)\n",
      megapixels, threads, measuring.count(), took.count(), used / megapixels);
}

int run(const std::vector<std::string>& words) {
  Table table;
  if (words.size() >= 3 && words[0] == "white") {
    for (std::size_t i = 2; i < words.size(); ++i) {
      const Bitmap clean = read(words[i]);
      const Bitmap noisy = withNoise(clean, std::stod(words[1]), static_cast<unsigned>(i));
      compare(nameOf(words[i]), noisy, clean, table);
    }
  } else if (words.size() >= 3 && words[0] == "pairs") {
    for (std::size_t i = 1; i + 1 < words.size(); i += 2) {
      compare(nameOf(words[i]), read(words[i]), read(words[i + 1]), table);
    }
  } else if (words.size() >= 2 && words[0] == "self") {
    for (std::size_t i = 1; i < words.size(); ++i) {
      const Bitmap picture = read(words[i]);
      compare(nameOf(words[i]), picture, picture, table);
    }
  } else if (words.size() >= 4 && words[0] == "time") {
    const int width = std::stoi(words[1]);
    const int height = std::stoi(words[2]);
    const bool isPart = words.size() > 6;
    timeOne(width, height, std::stoi(words[3]), words.size() > 4 ? std::stod(words[4]) : 25.0,
            isPart ? std::stoi(words[5]) : width, isPart ? std::stoi(words[6]) : height);
    return 0;
  } else {
    std::fprintf(stderr, "see the beginning of deep_quality.cpp\n");
    return 2;
  }
  std::printf("mean of %d: %.3f -> %.3f dB, worst change %+.2f\n", table.count,
              table.before / table.count, table.after / table.count, table.worst);
  return 0;
}

}  // namespace
}  // namespace velmara

int main(int argc, char** argv) {
  return velmara::run({argv + 1, argv + argc});
}
