#include "session/denoise_job.h"

#include "imaging/image_reader.h"
#include "imaging/utils.h"
#include "session/photo_job.h"
#include "session/whole_photo.h"

namespace velmara {
namespace {

// A picture as a plain canvas at its own size; not valid if the file cannot be read.
Image loadAtOwnSize(const std::string& path) {
  const auto loaded = readImage(path);
  if (!loaded) return {};
  return Utils::sharedUtils().scaleImage(*loaded, loaded->size());
}

Image loadForFilter(const DenoiseJob& job) {
  if (job.wholePhoto.isValid()) return job.wholePhoto;
  if (!job.isExportingPhoto) return loadAtOwnSize(job.photo.filePath);
  const auto whole = loadWholePhoto(job.photo);
  return whole ? *whole : Image();
}

}  // namespace

DenoiseOutcome runDenoiseJob(const DenoiseJob& job, const DenoiseEngine& engine,
                             const LogSink& log) {
  DenoiseOutcome outcome{{}, job.psnrOfRealImage, job.mapping};
  const Image image = loadForFilter(job);
  if (outcome.psnrOfRealImage == 0.0F) {
    outcome.psnrOfRealImage = static_cast<float>(engine.psnr(loadAtOwnSize(job.wholePhotoPath)));
  }
  const double psnr =
      effectivePsnr(outcome.psnrOfRealImage, job.isExportingPhoto, job.currentZooomFactor);
  const MappedParameters mapped =
      mapNoiseToParameters(psnr, job.mode, job.isExportingPhoto, job.mapping);
  outcome.mapping = mapped.mapping;
  const FilterParameters parameters = filterParameters(mapped.parameters, job.mode);
  log(parametersLogLine(psnr, parameters));
  outcome.image = engine.denoise(image, parameters);
  return outcome;
}

}  // namespace velmara
