#include "engine/denoise_algo_implementation.h"

#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <string>
#include <string_view>
#include <utility>

#include "base/pixel_operations.h"
#include "engine/band_run.h"
#include "engine/denoise_request.h"
#include "engine/fast/fast_kernel.h"
#include "engine/noise_level.h"

namespace velmara {
namespace {

EngineEnvironment& sharedEnvironment() {
  static EngineEnvironment environment;
  return environment;
}

bool environmentAsksForReference() {
  static const bool asks = [] {
    const char* engine = std::getenv("VELMARA_ENGINE");
    return engine != nullptr && std::string_view(engine) == "reference";
  }();
  return asks;
}

// What the kernel makes of sizes it does not filter: bands without rows.
FilterGeometry withoutRows(FilterGeometry geometry) {
  geometry.heightSrc = 0;
  return geometry;
}

// Whether `rows` rows of so many bytes lie within a buffer, however large the numbers.
bool rowsFit(std::int64_t rowBytes, std::int64_t rows, std::size_t size) {
  return rows == 0 || rowBytes <= static_cast<std::int64_t>(size) / rows;
}

bool buffersFit(const FilterGeometry& g, const FilterBuffers& buffers) {
  return rowsFit(g.sourceStride(), g.heightIm, buffers.sourceBytes.size()) &&
         rowsFit(std::int64_t{g.channelsDest} * g.widthDest, g.heightDest,
                 buffers.destBytes.size());
}

// Toward zero; a number beyond the largest becomes that.
std::int64_t truncated(double value) {
  constexpr double kBeyond = 9223372036854775808.0;  // 2^63
  if (value >= kBeyond) return std::numeric_limits<std::int64_t>::max();
  return value > -kBeyond ? static_cast<std::int64_t>(value) : 0;
}

// The pixels of an image of that logical size over the seconds it took.
std::int64_t pixelsPerSecond(Size size, double seconds) {
  const auto pixels = static_cast<double>(truncated(size.width * size.height));
  if (pixels == 0.0) return 0;
  if (!(seconds > 0.0)) return std::numeric_limits<std::int64_t>::max();
  return truncated(pixels / seconds);
}

bool filterBand(KernelChoice choice, FilterBuffers& buffers, const FilterGeometry& geometry,
                RowRange rows) {
  const auto kernel = makeKernel(choice, geometry, buffers);
  if (kernel != nullptr) return runOneBand(*kernel, buffers, geometry, rows);
  ++buffers.completedSlices;
  return false;
}

}  // namespace

DenoiseAlgoImplementation& DenoiseAlgoImplementation::sharedInstance() {
  static DenoiseAlgoImplementation instance(sharedEnvironment());
  return instance;
}

void DenoiseAlgoImplementation::installSharedEnvironment(EngineEnvironment environment) {
  sharedEnvironment() = std::move(environment);
}

DenoiseAlgoImplementation::DenoiseAlgoImplementation(EngineEnvironment environment)
    : environment_(std::move(environment)) {
  if (environmentAsksForReference()) environment_.kernel = KernelChoice::kReference;
}

Image DenoiseAlgoImplementation::denoiseImageUsingCustomFastNLMeans(const Image& image,
                                                                    int templateWinSize,
                                                                    int searchWinSize, int sigmaVal,
                                                                    const RunWatch& watch) const {
  return applyFastNLMeansAlgorithmOnImage(image, templateWinSize, searchWinSize,
                                          static_cast<double>(sigmaVal), false, watch);
}

Image DenoiseAlgoImplementation::applyFastNLMeansAlgorithmOnImage(
    const Image& image, int templateWinSize, int searchWinSize, double sigmaVal,
    bool isTestSpeedMode, const RunWatch& watch) const {
  if (templateWinSize > searchWinSize) {
    std::fputs("searchWindowSize should be larger than templeteWindowSize\n", stdout);
    return {};
  }
  if (templateWinSize < 0) {
    log("denoise: negative window sizes");
    return {};
  }
  if (!image.isValid()) return image;
  if (!isTestSpeedMode && !mayRunInParallel()) return {};

  const std::unique_ptr<DenoiseRequest> request = prepareRequest(
      image.bitmap(), templateWinSize, searchWinSize, sigmaVal, watch.awaitRows, environment_.log);
  if (request == nullptr) {
    log("denoise: not enough memory for the request");
    return {};
  }
  request->buffers.control = watch.control;
  const FilterGeometry geometry =
      isFilterable(request->geometry) ? request->geometry : withoutRows(request->geometry);
  // Only a colour picture's output rows are the result's.
  RunWatch bandWatch = watch;
  std::atomic<bool> hasSource = true;
  // The kernels read ahead, by less than a row.
  const int rowsBelow = request->padded->rowCount() - image.bitmap().height() + 1;
  bandWatch.awaitRows = [&](int rows) {
    if (!request->padded->fillTo(rows + rowsBelow)) hasSource = false;
    return hasSource.load();
  };
  if (isTestSpeedMode || geometry.channelsDest != 3) bandWatch.rowsFinished = nullptr;
  bool done = false;
  if (isTestSpeedMode) {
    request->padded->fillTo(request->padded->rowCount());
    // Runs are filtered by the fast kernel, so that is what is measured.
    done = filterBand(KernelChoice::kFast, request->buffers, geometry, {0, geometry.heightSrc});
  } else {
    const auto kernel = makeKernel(environment_.kernel, geometry, request->buffers);
    done =
        kernel != nullptr && runBands(environment_, *kernel, request->buffers, geometry, bandWatch);
  }
  if (request->buffers.isCancelled() || !hasSource) return {};
  if (!isTestSpeedMode) log(("Threads Processed = " + std::to_string(kBands)).c_str());
  if (!done) {
    log("denoise: not enough memory to filter");
    return {};
  }
  if (watch.rowsFinished && !bandWatch.rowsFinished) {
    watch.rowsFinished(request->canvas.packed().data(), 0, image.bitmap().height());
  }
  return Image(std::move(request->canvas).finish(), image.profile());
}

std::int64_t DenoiseAlgoImplementation::calculateProcessingSpeedForTestImage(
    const Image& image, int templateWinSize, int searchWinSize, int sigmaVal,
    JobControl* control) const {
  const double start = now();
  const Image opaque(removeAlpha(image.bitmap(), environment_.log), image.profile());
  applyFastNLMeansAlgorithmOnImage(opaque, templateWinSize, searchWinSize,
                                   static_cast<double>(sigmaVal), true, {control});
  if (control != nullptr && control->isCancelled()) return 0;
  return pixelsPerSecond(image.size(), now() - start);
}

double DenoiseAlgoImplementation::getPSNRofImage(const Image& image) const {
  log("getPSNRofImage:");
  return noiseLevel(image, environment_);
}

double DenoiseAlgoImplementation::psnrOfCanvas(const Bitmap& rgb) const {
  log("getPSNRofImage:");
  return noiseLevelOfCanvas(rgb, environment_);
}

// NOLINTNEXTLINE(readability-function-size): the geometry arguments are the interface.
bool DenoiseAlgoImplementation::processFastNLMeansAlgorithmWithCounter(
    FilterBuffers& buffers, int counter, int totalThreads, int templateWinSize, int searchWinSize,
    std::int64_t D, int sr, double tdiv, int tr, std::int64_t H, int widthDest, int heightDest,
    int channelsDest, int widthIm, int heightIm, int channelsIm, int widthSrc, int heightSrc,
    int channelsSrc) const {
  const FilterGeometry geometry{templateWinSize,
                                searchWinSize,
                                D,
                                sr,
                                tdiv,
                                tr,
                                H,
                                widthDest,
                                heightDest,
                                channelsDest,
                                widthIm,
                                heightIm,
                                channelsIm,
                                widthSrc,
                                heightSrc,
                                channelsSrc};
  if (!isFilterable(geometry) || !buffersFit(geometry, buffers) || counter < 0 ||
      counter >= totalThreads) {
    ++buffers.completedSlices;
    return true;
  }
  return filterBand(environment_.kernel, buffers, geometry,
                    rowsOfBand(heightSrc, counter, totalThreads));
}

void DenoiseAlgoImplementation::log(const char* line) const {
  if (environment_.log) environment_.log(line);
}

double DenoiseAlgoImplementation::now() const {
  if (environment_.clock) return environment_.clock();
  const auto sinceStart = std::chrono::steady_clock::now().time_since_epoch();
  return std::chrono::duration<double>(sinceStart).count();
}

bool DenoiseAlgoImplementation::mayRunInParallel() const {
  if (environment_.workers == nullptr || environment_.mainQueue == nullptr) {
    log("denoise: no queues to run on");
    return false;
  }
  if (environment_.mainQueue->isCurrent()) {
    log("denoise: refused on the main thread, which would wait for itself");
    return false;
  }
  return true;
}

}  // namespace velmara
