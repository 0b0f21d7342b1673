#include "engine/denoise_algo_implementation.h"

#include <chrono>
#include <cstdio>
#include <string>
#include <utility>

#include "base/alpha.h"
#include "engine/band_run.h"
#include "engine/calibration.h"
#include "engine/denoise_request.h"
#include "engine/kernel_choice.h"
#include "engine/noise_level.h"

namespace velmara {
namespace {

EngineEnvironment& sharedEnvironment() {
  static EngineEnvironment environment;
  return environment;
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

}  // namespace

DenoiseAlgoImplementation& DenoiseAlgoImplementation::sharedInstance() {
  static DenoiseAlgoImplementation instance(sharedEnvironment());
  return instance;
}

void DenoiseAlgoImplementation::installSharedEnvironment(EngineEnvironment environment) {
  sharedEnvironment() = std::move(environment);
}

DenoiseAlgoImplementation::DenoiseAlgoImplementation(EngineEnvironment environment)
    : environment_(std::move(environment)) {}

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

  const std::unique_ptr<DenoiseRequest> request =
      prepareRequest(image.bitmap(), templateWinSize, searchWinSize, sigmaVal);
  if (request == nullptr) {
    log("denoise: not enough memory for the request");
    return {};
  }
  request->buffers.control = watch.control;
  const FilterGeometry& g = request->geometry;
  // Only a colour picture's output rows are the result's.
  RunWatch bandWatch = watch;
  if (isTestSpeedMode || g.channelsDest != 3) bandWatch.rowsFinished = nullptr;
  bool done = false;
  if (isTestSpeedMode) {
    done = processFastNLMeansAlgorithmWithCounter(
        request->buffers, 0, 1, g.templateWinSize, g.searchWinSize, g.D, g.sr, g.tdiv, g.tr, g.H,
        g.widthDest, g.heightDest, g.channelsDest, g.widthIm, g.heightIm, g.channelsIm, g.widthSrc,
        g.heightSrc, g.channelsSrc);
  } else {
    const FilterGeometry geometry = isFilterable(g) ? g : withoutRows(g);
    const auto kernel = makeKernel(environment_.kernel, geometry, request->buffers);
    done =
        kernel != nullptr && runBands(environment_, *kernel, request->buffers, geometry, bandWatch);
  }
  if (request->buffers.isCancelled()) return {};
  if (!isTestSpeedMode) log(("Threads Processed = " + std::to_string(kBands)).c_str());
  if (!done) {
    log("denoise: not enough memory to filter");
    return {};
  }
  if (watch.rowsFinished && !bandWatch.rowsFinished) {
    watch.rowsFinished(request->canvas.packed().data(), 0, g.heightDest);
  }
  return Image(std::move(request->canvas).finish(), image.profile());
}

std::int64_t DenoiseAlgoImplementation::calculateProcessingSpeedForTestImage(
    const Image& image, int templateWinSize, int searchWinSize, int sigmaVal,
    JobControl* control) const {
  const double start = now();
  const Image opaque(withoutAlpha(image.bitmap()), image.profile());
  applyFastNLMeansAlgorithmOnImage(opaque, templateWinSize, searchWinSize,
                                   static_cast<double>(sigmaVal), true, {control, {}});
  if (control != nullptr && control->isCancelled()) return 0;
  return pixelsPerSecond(image.size(), now() - start);
}

double DenoiseAlgoImplementation::getPSNRofImage(const Image& image) const {
  log("getPSNRofImage:");
  return noiseLevel(image, environment_);
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
  const auto kernel = makeKernel(environment_.kernel, geometry, buffers);
  if (kernel == nullptr) {
    ++buffers.completedSlices;
    return false;
  }
  return runOneBand(*kernel, buffers, geometry, rowsOfBand(heightSrc, counter, totalThreads));
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
