#include "session/denoise_engine.h"

#include "engine/denoise_algo_implementation.h"
#include "session/loaded_photo.h"

namespace velmara {

Image AlgorithmEngine::denoise(const Image& image, const FilterParameters& parameters,
                               const RunWatch& watch) const {
  return algorithm_.denoiseImageUsingCustomFastNLMeans(
      image, parameters.templateWinSize, parameters.searchWinSize, parameters.sigmaVal, watch);
}

double AlgorithmEngine::psnr(const Image& image) const {
  return isPlainColour(image) ? algorithm_.psnrOfCanvas(image.bitmap())
                              : algorithm_.getPSNRofImage(atOwnSize(image));
}

std::int64_t AlgorithmEngine::processingSpeed(const Image& testImage,
                                              const FilterParameters& parameters,
                                              JobControl* control) const {
  return algorithm_.calculateProcessingSpeedForTestImage(testImage, parameters.templateWinSize,
                                                         parameters.searchWinSize,
                                                         parameters.sigmaVal, control);
}

}  // namespace velmara
