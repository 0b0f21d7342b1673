#pragma once

#include <string>
#include <vector>

#include "base/image.h"
#include "base/result.h"
#include "engine/denoise_algo_implementation.h"
#include "imaging/image_writer.h"
#include "session/denoise_parameters.h"
#include "session/loaded_photo.h"
#include "session/photo_file.h"

namespace velmara {

/// The steps of exporting a whole photo, each a plain function: load, measure, filter, turn
/// upright, write. None may run on the main thread, which filtering waits for.

/// The photo at its full pixel size (the largest of its representations) on a plain 4-sample
/// canvas, pixels as stored.
Result<Image> loadWholePhoto(const PhotoFile& photo);

/// The photo at the size of its largest representation, turned upright as its orientation says:
/// what goes into the file. A result whose photo has vanished meanwhile keeps its own size.
Result<Image> uprightAtFullSize(const PhotoFile& photo, const Image& filtered);

}  // namespace velmara
