#pragma once

#include <cstdint>

#include "base/image.h"
#include "engine/engine_environment.h"
#include "engine/filter_kernel.h"

namespace velmara {

/// The denoising engine: turns an image and three numbers into a denoised image of the same size by
/// non-local means (A. Buades, B. Coll, J.-M. Morel, "A non-local algorithm for image denoising",
/// CVPR 2005), estimates how noisy an image is and measures how fast this machine filters.
///
/// Nothing is thrown; an image that is not valid stands for "no image". All operations may be
/// called from several threads at a time; buffers belong to their request.
class DenoiseAlgoImplementation {
 public:
  /// The program's one engine, made on first use.
  static DenoiseAlgoImplementation& sharedInstance();
  /// What the shared engine works with; to be called before its first use, later calls change
  /// nothing.
  static void installSharedEnvironment(EngineEnvironment environment);

  /// An engine beside the shared one.
  explicit DenoiseAlgoImplementation(EngineEnvironment environment);

  /// The denoised image, filtered in eight bands on the environment's workers and the calling
  /// thread; see applyFastNLMeansAlgorithmOnImage.
  Image denoiseImageUsingCustomFastNLMeans(const Image& image, int templateWinSize,
                                           int searchWinSize, int sigmaVal,
                                           const RunWatch& watch = {}) const;

  /// Filters an image with square templates and search windows of these sides (template no larger
  /// than search) and strength sigma. Alpha is drawn over black first. The result is opaque with 4
  /// samples a pixel, as large as the input's pixels, and keeps its colour profile.
  ///
  /// In test-speed mode all rows are one band on the calling thread. Else the wait for the eight
  /// bands ends through the main queue, so a call on that queue's own thread is refused.
  ///
  /// Results other than the filtered image: a template larger than the search window writes a
  /// message to standard output and gives no image; negative sizes, missing queues, the wrong
  /// thread and lack of memory give a log line and no image; an image that is not valid is given
  /// back as it is; one of two samples a pixel comes back black. A request that the watch cancels
  /// gives no image and writes no line.
  Image applyFastNLMeansAlgorithmOnImage(const Image& image, int templateWinSize, int searchWinSize,
                                         double sigmaVal, bool isTestSpeedMode,
                                         const RunWatch& watch = {}) const;

  /// Filters a test image once in test-speed mode, which uses the fast kernel, and returns the
  /// pixels per second (of the image's logical size), everything from the decoded image to the
  /// result included; 0 if the control is cancelled.
  std::int64_t calculateProcessingSpeedForTestImage(const Image& image, int templateWinSize,
                                                    int searchWinSize, int sigmaVal,
                                                    JobControl* control = nullptr) const;

  /// How noisy an image is, in dB; see noiseLevel.
  double getPSNRofImage(const Image& image) const;
  /// getPSNRofImage of the opaque 4-sample canvas that packed RGB is drawn on at its own size,
  /// without making it. Looks at no more than rowsMeasuredOfCanvas. Throws std::bad_alloc.
  double psnrOfCanvas(const Bitmap& rgb) const;

  /// The kernel: filters band `counter` of `totalThreads` from the buffers' sourceBytes to their
  /// destBytes and adds one to their completedSlices, whatever happened. Writes nothing for
  /// channels other than 1 and 3, for an empty band, for sizes that contradict each other or the
  /// buffers (see FilterGeometry), and when there is no memory to work in; the last gives false,
  /// and so does a cancelled control of the buffers.
  bool processFastNLMeansAlgorithmWithCounter(FilterBuffers& buffers, int counter, int totalThreads,
                                              int templateWinSize, int searchWinSize,
                                              std::int64_t D, int sr, double tdiv, int tr,
                                              std::int64_t H, int widthDest, int heightDest,
                                              int channelsDest, int widthIm, int heightIm,
                                              int channelsIm, int widthSrc, int heightSrc,
                                              int channelsSrc) const;

 private:
  void log(const char* line) const;
  double now() const;
  bool mayRunInParallel() const;

  EngineEnvironment environment_;
};

}  // namespace velmara
