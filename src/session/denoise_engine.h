#pragma once

#include <cstdint>

#include "base/image.h"
#include "engine/engine_environment.h"
#include "session/denoise_parameters.h"

namespace velmara {

class DenoiseAlgoImplementation;

/// The denoising engine as the editing session uses it. Nothing throws; an image that is not valid
/// stands for "no image". Any thread.
class DenoiseEngine {
 public:
  virtual ~DenoiseEngine() = default;

  /// The denoised image; none if the watch cancels. Not on the main thread.
  virtual Image denoise(const Image& image, const FilterParameters& parameters,
                        const RunWatch& watch = {}) const = 0;
  /// How noisy the image is when drawn at its own size on a 4-sample canvas, in dB. Throws
  /// std::bad_alloc.
  virtual double psnr(const Image& image) const = 0;
  /// Pixels per second, measured by filtering the image once on the calling thread; 0 if the
  /// control is cancelled.
  virtual std::int64_t processingSpeed(const Image& testImage, const FilterParameters& parameters,
                                       JobControl* control = nullptr) const = 0;
};

/// The engine itself, which must outlive this.
class AlgorithmEngine final : public DenoiseEngine {
 public:
  /// `algorithm` must outlive this.
  explicit AlgorithmEngine(const DenoiseAlgoImplementation& algorithm) : algorithm_(algorithm) {}

  Image denoise(const Image& image, const FilterParameters& parameters,
                const RunWatch& watch = {}) const override;
  double psnr(const Image& image) const override;
  std::int64_t processingSpeed(const Image& testImage, const FilterParameters& parameters,
                               JobControl* control = nullptr) const override;

 private:
  const DenoiseAlgoImplementation& algorithm_;
};

}  // namespace velmara
