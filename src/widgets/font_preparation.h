#pragma once

#include <thread>

namespace velmara {

/// Reads the system's list of fonts on a thread of its own, which it returns. Called before the
/// application object is made, that work passes while the connection to the display is set up;
/// the first text would wait for it otherwise.
std::jthread prepareFonts();

}  // namespace velmara
