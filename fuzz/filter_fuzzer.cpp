// A request to the engine of any sizes, windows and strength: the fast kernel gives the reference's
// bits, and the engine an opaque picture of the same size or, with a reason, none.
#include <algorithm>
#include <fuzzer/FuzzedDataProvider.h>

#include "base/pixel_operations.h"
#include "engine/band_run.h"
#include "engine/denoise_algo_implementation.h"
#include "engine/fast/fast_kernel.h"
#include "engine/reference_kernel.h"
#include "fuzzing.h"

namespace {

using namespace velmara;
using fuzzing::require;

struct Request {
  Bitmap picture;
  int t = 0, s = 0;
  double sigma = 0.0;
};

Bitmap pictureOf(FuzzedDataProvider& data) {
  const int width = data.ConsumeIntegralInRange(1, 80);
  const int height = data.ConsumeIntegralInRange(1, 24);
  const int samples = data.ConsumeIntegralInRange(1, 4);
  auto bytes = data.ConsumeRemainingBytes<std::uint8_t>();
  // What the input has no bytes for repeats what it has.
  const auto given = std::max<std::size_t>(bytes.size(), 1);
  bytes.resize(static_cast<std::size_t>(width * height * samples));
  for (std::size_t i = given; i < bytes.size(); ++i) bytes[i] = bytes[i - given];
  return Bitmap::copyOf(bytes, width, height, samples);
}

Request requestOf(FuzzedDataProvider& data) {
  Request request;
  const bool isUsual = data.ConsumeIntegralInRange(0, 15) != 0;
  request.s = isUsual ? data.ConsumeIntegralInRange(0, 24) : data.ConsumeIntegral<int>();
  request.t = isUsual ? data.ConsumeIntegralInRange(0, request.s) : data.ConsumeIntegral<int>();
  request.sigma = data.ConsumeBool() ? data.ConsumeIntegralInRange(-5, 300)
                                     : data.ConsumeFloatingPoint<double>();
  request.picture = pictureOf(data);
  return request;
}

// How many samples are looked at, too many for any test where nothing is bounded.
double costOf(const Request& request) {
  const double window = static_cast<double>(request.s) * request.s;
  const double patch = static_cast<double>(request.t) * request.t + 1.0;
  return static_cast<double>(request.picture.byteCount()) * window * patch;
}

void compareKernels(const Request& request) {
  const int channels = std::min(request.picture.samplesPerPixel(), 3);
  if (channels == 2 || request.picture.samplesPerPixel() == 4) return;
  const FilterGeometry geometry = geometryOfRequest(
      request.picture.width(), request.picture.height(), channels, request.t, request.s);
  const Bitmap padded =
      withMirroredBorder(request.picture, static_cast<int>(borderOfWindows(request.t, request.s)));
  std::vector<std::uint8_t> fast(request.picture.byteCount(), 0xA5), reference(fast);
  FilterBuffers buffers;
  buffers.sourceBytes = padded.bytes();
  buffers.weightTable = buildWeightTable(request.sigma, channels);
  const RowRange all = {0, geometry.heightSrc};
  buffers.destBytes = fast;
  const auto kernel = makeFastKernel(geometry, buffers);
  if (kernel == nullptr) return;
  runOneBand(*kernel, buffers, geometry, all);
  buffers.destBytes = reference;
  runOneBand(*makeReferenceKernel(geometry, buffers), buffers, geometry, all);
  require(fast == reference, "the fast kernel gives the bits of the reference");
}

void askEngine(const Request& request, bool isRefused) {
  const DenoiseAlgoImplementation engine({});
  const Image image(request.picture);
  const Image result =
      engine.applyFastNLMeansAlgorithmOnImage(image, request.t, request.s, request.sigma, true);
  require(!isRefused || !result.isValid(), "windows without sense are refused");
  if (!result.isValid()) return;
  require(result.bitmap().width() == image.bitmap().width() &&
              result.bitmap().height() == image.bitmap().height(),
          "the result is as large as the picture");
  require(result.bitmap().samplesPerPixel() == 4 && isOpaque(result.bitmap()),
          "the result is opaque");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  constexpr double kMostWork = 3e6;
  // From here on a padded picture is larger than any may be, and the engine has to see that.
  constexpr int kHopelessWindow = 50000;
  FuzzedDataProvider data(bytes, size);
  const Request request = requestOf(data);
  const bool isRefused = request.t > request.s || request.t < 0 || request.s >= kHopelessWindow;
  if (!isRefused && costOf(request) > kMostWork) return 0;
  if (!isRefused) compareKernels(request);
  askEngine(request, isRefused);
  require(DenoiseAlgoImplementation({}).getPSNRofImage(Image(request.picture)) >= 0.0,
          "a noise level is a number");
  return 0;
}
