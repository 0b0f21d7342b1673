#pragma once

#include <cstddef>
#include <istream>
#include <string>
#include <vector>

#include "base/result.h"
#include "cli/options.h"
#include "session/batch/found_photos.h"

namespace velmara::cli {

/// The paths in a list: one a line, or, where there is a zero byte, each ended by one, as
/// `find -print0` writes them. Empty ones are left out.
std::vector<std::string> pathsIn(std::istream& list);

/// The photos that the options name: those on the command line, in its folders and in its list,
/// with those that are other workers'. Folders that cannot be looked into are told on standard
/// error and make `isWhole` false.
Result<std::vector<BatchPhoto>> photosOf(const DenoiseOptions& options, bool& isWhole);

/// Which of so many photos are this worker's part, in their order.
std::vector<std::size_t> partOf(const DenoiseOptions& options, std::size_t photos);

}  // namespace velmara::cli
