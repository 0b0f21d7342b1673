#pragma once

#include "base/bitmap.h"

namespace velmara::cli {

/// One picture of two of the same size: the left half of `before`, a line, the right half of
/// `after`. The line is the one of the program's split view: a light band between black hairlines,
/// wider in larger pictures. Opaque RGB; not valid if the sizes differ or memory is short.
Bitmap sideBySide(const Bitmap& before, const Bitmap& after);

}  // namespace velmara::cli
