#include "session/denoise_engine.h"

#include "engine/denoise_algo_implementation.h"

namespace velmara {

Image AlgorithmEngine::denoise(const Image& image, const FilterParameters& parameters) const {
  return algorithm_.denoiseImageUsingCustomFastNLMeans(
      image, parameters.templateWinSize, parameters.searchWinSize, parameters.sigmaVal);
}

double AlgorithmEngine::psnr(const Image& image) const {
  return algorithm_.getPSNRofImage(image);
}

std::int64_t AlgorithmEngine::processingSpeed(const Image& testImage,
                                              const FilterParameters& parameters) const {
  return algorithm_.calculateProcessingSpeedForTestImage(
      testImage, parameters.templateWinSize, parameters.searchWinSize, parameters.sigmaVal);
}

}  // namespace velmara
