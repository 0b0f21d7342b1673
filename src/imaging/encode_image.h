#pragma once

#include <cstdint>
#include <vector>

#include "base/image.h"
#include "base/result.h"
#include "imaging/image_writer.h"
#include "imaging/vips_api.h"

namespace velmara {

/// encodeImage of what libvips holds or computes: 1 to 4 samples of 8 bits, with alpha only where
/// the format has it. Each region is asked for as the saver comes to it, from the top to the bottom
/// for JPEG, TIFF and PNG.
Result<std::vector<std::uint8_t>> encodeVipsImage(VipsImage* image, const ColorProfile& profile,
                                                  FileFormat format, const EncodeOptions& options);

}  // namespace velmara
