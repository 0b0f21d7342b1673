#include <cstdio>
#include <string>

#include "cli/commands.h"
#include "imaging/file_format.h"

namespace velmara::cli {

int run(const FormatsOptions& /*options*/) {
  for (const FormatFacts& facts : fileFormats()) {
    std::string extensions;
    for (const std::string_view extension : facts.extensions) {
      if (!extension.empty()) extensions += " ." + std::string(extension);
    }
    const bool isWritten = !facts.word.empty();
    std::printf("%-10s%-14s%-26s%s\n", std::string(facts.name).c_str(),
                isDecoderInstalled(facts) ? "read" : "not installed",
                isWritten ? ("written, --format " + std::string(facts.word)).c_str() : "",
                extensions.c_str());
  }
  return 0;
}

}  // namespace velmara::cli
