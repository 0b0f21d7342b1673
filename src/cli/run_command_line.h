#pragma once

namespace velmara::cli {

/// Carries out the words after the program's name, without a display, and returns the exit code of
/// the process. Called on the main thread; the work is done on another one while this one serves
/// the main queue.
int runCommandLine(int argc, char** argv);

}  // namespace velmara::cli
