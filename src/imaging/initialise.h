#pragma once

namespace velmara {

/// Starts the picture libraries for the whole process: their caches off, their warnings silenced,
/// every decoder blocked but those of the kinds of file this program reads. May be called any
/// number of times, from any thread; every operation of this layer calls it by itself. False if the
/// libraries cannot be started.
bool initialiseImaging();

}  // namespace velmara
