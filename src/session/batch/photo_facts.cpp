#include "session/batch/photo_facts.h"

#include <algorithm>
#include <cmath>
#include <new>
#include <utility>

#include "engine/deep/deep_denoise.h"
#include "imaging/resample.h"
#include "imaging/rotate_with_exif.h"

namespace velmara {
namespace {

Image thumbnailOf(const Image& image, int orientation) {
  const Bitmap& bitmap = image.bitmap();
  if (!bitmap.isValid()) return {};
  const double scale =
      std::min(1.0, double{kThumbnailSide} / std::max(bitmap.width(), bitmap.height()));
  const auto side = [scale](int pixels) {
    return std::max(1, static_cast<int>(std::lround(scale * pixels)));
  };
  const Bitmap small = resampled(bitmap, side(bitmap.width()), side(bitmap.height()));
  return Image(RotateWithEXIF(small, orientation), image.profile());
}

}  // namespace

Result<PhotoFacts> readPhotoFacts(const std::string& path, const DenoiseEngine& engine,
                                  const JobControl& control) try {
  auto opened = openPhoto(path);
  if (!opened) return Error{opened.error()};
  const auto photo = loadPixels(std::move(opened).value(), &control);
  if (!photo) return Error{photo.error()};
  PhotoFacts facts;
  const int orientation = photo->record.orientation().value_or(1);
  facts.width = static_cast<int>(photo->record.width);
  facts.height = static_cast<int>(photo->record.height);
  if (exchangesSides(orientation)) std::swap(facts.width, facts.height);
  facts.thumbnail = thumbnailOf(photo->image, orientation);
  if (!isLargeEnoughToFilter(photo->record) || control.isCancelled()) return facts;
  const Image picture = atOwnSize(photo->image);
  if (!picture.isValid()) return Error{"not enough memory"};
  facts.psnr = engine.psnr(picture);
  facts.isBeyondLevels = measureNoise(picture.bitmap()).isBeyondLevels();
  return facts;
} catch (const std::bad_alloc&) {
  return Error{"not enough memory"};
}

PhotoFacts factsOf(const PhotoJobResult& job) {
  PhotoFacts facts;
  facts.width = job.writtenWidth;
  facts.height = job.writtenHeight;
  if (job.parameters) facts.psnr = double{job.psnrOfRealImage};
  facts.isBeyondLevels = job.deepNoise && job.deepNoise->isBeyondLevels();
  facts.thumbnail =
      thumbnailOf(job.image, job.hasReplacedPhoto ? 1 : job.photo.record.orientation().value_or(1));
  return facts;
}

}  // namespace velmara
