#pragma once

#include <cstdint>
#include <span>

#include "base/image.h"
#include "engine/engine_environment.h"

namespace velmara {

/// The noise level of an image: the peak signal-to-noise ratio in dB between it and its
/// median-filtered copy. Low for a noisy photo, high for a clean one; infinite if the compared
/// samples do not differ, 0.0 for a picture under 10,000 pixels or one that cannot be measured
/// (with a log line).
///
/// The measure looks at the first N bytes of the interleaved samples, N being the number of pixels.
/// The copy is an opaque colour canvas of 4 samples, as filters render their output; when the
/// lengths of the two as TIFF files have not the ratio 1, it goes through a JPEG encoding whose
/// factor is that ratio.
double noiseLevel(const Image& image, const EngineEnvironment& environment);

/// The same of the opaque canvas of packed RGB, of which it needs the colours only, and no rows
/// beyond the first rowsMeasuredOfCanvas. Throws std::bad_alloc after the log line: what is
/// measured as 0 dB would be filtered strongly.
double noiseLevelOfCanvas(const Bitmap& rgb, const EngineEnvironment& environment);
int rowsMeasuredOfCanvas(int width, int height);

/// 20 log10(255 / sqrt(sum of squared differences / count)) of two rows of bytes of the same
/// length, in single precision, the squares added one after another.
double peakSignalToNoiseRatio(std::span<const std::uint8_t> a, std::span<const std::uint8_t> b,
                              std::size_t count);

/// The length in bytes of a baseline TIFF file (TIFF 6.0) with one uncompressed strip for a
/// picture, or one after another for an image of several.
std::uint64_t tiffLength(const Bitmap& bitmap);
std::uint64_t tiffLength(const Image& image);

}  // namespace velmara
