#include "session/deep_preview.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "base/pixel_operations.h"
#include "imaging/resample.h"
#include "imaging/rotate_with_exif.h"

namespace velmara {
namespace {

// As far as the resampling filter of an enlarged picture reaches.
constexpr double kLobes = 3.0;

// The pixels of the photo that a region of the shown picture is made of, `across` and `down` of
// them to a shown one.
PixelRect pixelsBehind(const PixelRect& region, double across, double down) {
  const auto from = [](int at, double ratio) {
    return static_cast<int>(std::floor(at * ratio - (ratio < 1.0 ? kLobes : 0.0)));
  };
  const auto to = [](int at, double ratio) {
    return static_cast<int>(std::ceil(at * ratio + (ratio < 1.0 ? kLobes : 0.0)));
  };
  const int left = from(region.x, across);
  const int top = from(region.y, down);
  return {left, top, to(region.x + region.width, across) - left,
          to(region.y + region.height, down) - top};
}

}  // namespace

std::optional<Bitmap> denoiseRegionDeeply(const LoadedPhoto& photo, const Image& region,
                                          const ShownPlace& place, const DeepNoise& noise,
                                          DeepRequest request, JobControl& control) {
  const int orientation = photo.record.orientation().value_or(1);
  Size upright = photo.fullSize;
  if (exchangesSides(orientation)) std::swap(upright.width, upright.height);
  const double across = upright.width / place.picture.width;
  const double down = upright.height / place.picture.height;
  if (across > 1.0 || down > 1.0) {
    request.scale = static_cast<float>(1.0 / std::max(across, down));
    return denoiseDeeply(atOwnSize(region).bitmap(), noise, request, control);
  }
  const Bitmap stored = wholePhotoToFilter(photo).bitmap();
  const PixelRect behind =
      intersection(pixelsBehind(place.pixels, across, down),
                   {0, 0, static_cast<int>(upright.width), static_cast<int>(upright.height)});
  request.part = storedRect(behind, orientation, stored.width(), stored.height());
  const auto filtered = denoiseDeeply(stored, noise, request, control);
  if (!filtered) return std::nullopt;
  Bitmap result = withoutAlpha(RotateWithEXIF(*filtered, orientation));
  const PixelRect& shown = place.pixels;
  if (result.width() != shown.width || result.height() != shown.height) {
    const double bottom = behind.y + behind.height - (shown.y + shown.height) * down;
    result = drawnPart(
        result, {shown.x * across - behind.x, bottom, shown.width * across, shown.height * down},
        shown.width, shown.height);
  }
  return result.isValid() ? std::optional(std::move(result)) : std::nullopt;
}

}  // namespace velmara
