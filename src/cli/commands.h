#pragma once

#include <string>

#include "cli/options.h"
#include "engine/deep/deep_noise.h"
#include "engine/engine_environment.h"

namespace velmara::cli {

/// Carries out the words after the program's name, without a display, and returns the exit code of
/// the process. Called on the main thread; the work is done on another one while this one serves
/// the main queue.
int runCommandLine(int argc, char** argv);

// Each of these returns the exit code of the process. None on the main thread, which serves the
// main queue meanwhile.

/// Denoises the photos one after another; a bad one does not stop the others. Prints what it did
/// to standard output (to standard error where that carries a picture) and faults to standard
/// error. 0 all well, 1 some failed, kInterrupted after an interrupt, which leaves no file that is
/// not whole.
int run(const DenoiseOptions& options);

/// Prints the record, the noise level and the automatic parameters of photos. 0 all well, 1 some
/// could not be read.
int run(const InfoOptions& options);

/// Measures this machine's filter speed on the shipped test picture and prints it. 0, or 1 if the
/// test picture cannot be read.
int run(const CalibrateOptions& options);

/// Prints a table of the formats that this installation reads and writes. 0.
int run(const FormatsOptions& options);

/// Prints the words, to standard error if they tell of wrong usage. Any thread.
int run(const PrintAndExit& words);

/// The engine's surroundings on the command line: the global queue, the main queue and the log.
EngineEnvironment commandLineEngine(bool isReference = false);

/// "sigma 25.1 25.0 24.8" in the middle of red, green and blue, or "not found".
std::string noiseText(const DeepNoise& noise);
/// "27.94 dB", or "no noise found" for an infinite level.
std::string noiseText(double psnr);

}  // namespace velmara::cli
