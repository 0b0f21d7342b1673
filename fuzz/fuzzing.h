#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include "platform/log.h"
#include "support/scratch_folder.h"

namespace velmara::fuzzing {

/// Ends the run, as a finding, where something does not hold that always must.
inline void require(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "does not hold: %s\n", what);
  std::abort();
}

/// The input as a text.
inline std::string_view textOf(const std::uint8_t* data, std::size_t size) {
  return {reinterpret_cast<const char*>(data), size};
}

/// The path of a file with the input in it; the same path, and another file, for each call. `name`
/// may be chosen where it means something to the program.
inline std::string fileOf(std::string_view bytes, const std::string& name = "input") {
  static const testing_support::ScratchFolder folder;
  static const LogSink before = setLogSink(silentLog());
  std::string path = folder.file(name);
  testing_support::writeFile(path, std::string(bytes));
  return path;
}

}  // namespace velmara::fuzzing
