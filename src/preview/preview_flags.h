#pragma once

#include <cstdint>

namespace velmara {

/// `flag_current_Preview_Style`; the values are the tags of the style buttons. A value that is none
/// of the three may come from a wrong tag and is answered by doing nothing.
enum class PreviewStyle : std::int64_t { kSingle = 0, kSplit = 1, kDual = 2 };

/// `flag_current_Preview_Size`; the values are the tags of the size buttons.
enum class PreviewSize : std::int64_t { kActualSize = 0, kFitToScreen = 1, kDoubleSize = 2 };

}  // namespace velmara
