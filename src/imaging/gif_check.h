#pragma once

#include "base/result.h"
#include "imaging/input_file.h"

namespace velmara {

/// Whether the first frame of a GIF holds as many pixels as it says (GIF89a, appendix F), counted
/// without drawing them. The decoder takes what is missing for background.
Status checkGifFrame(const InputFile& file);

}  // namespace velmara
