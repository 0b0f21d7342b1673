#pragma once

#include <functional>

namespace velmara {

/// Runs a piece of work over the rows 0 to `rows`, cut into as many stretches as the machine has
/// processors, and waits for all of them. The work gets the first row of a stretch and the one
/// behind its last, on any thread, and must not throw; stretches do not overlap.
void parallelRows(int rows, const std::function<void(int, int)>& work);

}  // namespace velmara
