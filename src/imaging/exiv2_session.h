#pragma once

#include <mutex>

namespace velmara {

/// Exiv2 keeps registries for the whole process (name spaces of XMP, the maker notes' tables) that
/// its own locks do not all cover. Whoever reads or writes metadata holds this lock meanwhile.
std::unique_lock<std::mutex> lockExiv2();

/// The lock function that Exiv2's XMP toolkit is started with.
void lockXmpToolkit(void* data, bool lock);

}  // namespace velmara
