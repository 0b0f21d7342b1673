#include "engine/random_request.h"

#include <algorithm>
#include <sstream>

#include "base/pixel_operations.h"
#include "engine/band_run.h"

namespace velmara {
namespace {

constexpr std::size_t kGuard = 64;
constexpr std::uint8_t kSentinel = 0xA5;

template <class T, std::size_t kCount>
T oneOf(std::mt19937_64& random, const T (&choices)[kCount]) {
  return choices[random() % kCount];
}

}  // namespace

std::string KernelRequest::text() const {
  std::ostringstream out;
  out << width << " x " << height << " x " << channels << ", t " << t << ", s " << s << ", sigma "
      << sigma << ", content " << static_cast<int>(content) << ", seed " << seed;
  return out.str();
}

KernelRequest randomRequest(std::mt19937_64& random) {
  constexpr int kWidths[] = {1,   2,   3,   4,   5,   7,   8,   9,   11,  13,  15,  16,
                             17,  23,  31,  32,  33,  40,  63,  64,  65,  70,  97,  121,
                             122, 123, 124, 125, 126, 127, 128, 129, 150, 250, 251, 257};
  constexpr int kHeights[] = {1, 1, 2, 3, 4, 5, 7, 8, 9, 13, 17, 30};
  constexpr double kSigmas[] = {0, 1, 2, 3, 5, 8, 12, 25, 40, 200, -5, 2.5, 17.3};
  constexpr std::int64_t kMostOperations = 600000;
  KernelRequest r;
  r.content = oneOf(random, kAllContents);
  r.channels = random() % 3 == 0 ? 1 : 3;
  r.s = static_cast<int>(random() % 14);
  if (random() % 40 == 0) r.s = 14 + static_cast<int>(random() % 51);
  r.t = static_cast<int>(random() % static_cast<unsigned>(std::min(r.s, 13) + 1));
  if (random() % 2 == 0) r.t = std::min(r.t, 4);
  r.sigma = oneOf(random, kSigmas);
  r.seed = random();
  r.width = oneOf(random, kWidths);
  r.height = oneOf(random, kHeights);
  const std::int64_t cost = std::int64_t{r.s} * r.s * (std::int64_t{r.t} * r.t + 1) * r.channels;
  while (std::int64_t{r.width} * r.height * cost > kMostOperations &&
         (r.height > 1 || r.width > 1)) {
    (r.height > 1 ? r.height : r.width) /= 2;
  }
  return r;
}

KernelBuffers::KernelBuffers(const KernelRequest& request)
    : geometry_(
          geometryOfRequest(request.width, request.height, request.channels, request.t, request.s)),
      padded_(withMirroredBorder(makePicture(request.content, request.width, request.height,
                                             request.channels, request.seed),
                                 static_cast<int>(borderOfWindows(request.t, request.s)))),
      output_(static_cast<std::size_t>(request.width * request.height * request.channels) +
              2 * kGuard) {
  buffers_.sourceBytes = padded_.bytes();
  buffers_.destBytes = std::span(output_).subspan(kGuard, output_.size() - 2 * kGuard);
  buffers_.weightTable = buildWeightTable(request.sigma, request.channels);
}

Bytes KernelBuffers::run(const FilterKernel& kernel) {
  std::ranges::fill(output_, kSentinel);
  runOneBand(kernel, buffers_, geometry_, {0, geometry_.heightSrc});
  return output_;
}

}  // namespace velmara
