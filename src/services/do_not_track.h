#pragma once

namespace velmara {

/// Whether the value of DO_NOT_TRACK (null if it is not set) asks for silence: any value but ""
/// and "0" does.
bool asksForNoTracking(const char* doNotTrack);

/// The same for the environment of this process.
bool environmentAsksForNoTracking();

}  // namespace velmara
