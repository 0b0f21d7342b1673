// Words after the program's name, one a line, patterns for names, and lists of photos.
#include <algorithm>
#include <sstream>
#include <vector>

#include "cli/options.h"
#include "cli/photo_list.h"
#include "fuzzing.h"
#include "session/batch/name_pattern.h"

namespace {

using namespace velmara;
using fuzzing::require;

void checkWords(std::string_view text) {
  std::vector<std::string> words = {"velmara"};
  std::istringstream lines{std::string(text)};
  for (std::string word; std::getline(lines, word) && words.size() < 40;) {
    words.push_back(word.substr(0, word.find('\0')));
  }
  std::vector<const char*> argv;
  for (const std::string& word : words) argv.push_back(word.c_str());
  const int argc = static_cast<int>(argv.size());
  argv.push_back(nullptr);

  cli::windowStart(argc, argv.data());
  const cli::Command command = cli::parseCommandLine(argc, argv.data());
  if (const auto* answer = std::get_if<cli::PrintAndExit>(&command)) {
    require(answer->exitCode == 0 || answer->exitCode == 2, "wrong usage has its own exit code");
    require(!answer->text.empty(), "whoever is wrong is told why");
  }
  const auto* denoise = std::get_if<cli::DenoiseOptions>(&command);
  if (denoise == nullptr) return;
  require(!denoise->inputs.empty() || denoise->filesFrom, "there is something to denoise");
  require(!denoise->jobs || *denoise->jobs >= 1, "there is at least one job");
  // The parts of several machines are all photos, each once.
  if (denoise->part && denoise->part->second <= 50) {
    std::vector<std::size_t> all;
    for (std::size_t k = 1; k <= denoise->part->second; ++k) {
      cli::DenoiseOptions part = *denoise;
      part.part->first = k;
      std::ranges::copy(cli::partOf(part, 17), std::back_inserter(all));
    }
    std::ranges::sort(all);
    require(all.size() == 17 && all.front() == 0 && all.back() == 16, "parts make up the whole");
  }
}

void checkPattern(std::string_view text) {
  const auto pattern = NamePattern::parse(text);
  if (!pattern) {
    require(!pattern.error().empty(), "a pattern that is none says why");
    return;
  }
  for (const char* photo : {"/photos/a.jpg", "b", "../c.tar.gz", "/", ""}) {
    const std::string name = pattern->nameFor(photo, 3, 12);
    require(name.find('/') == std::string::npos, "a name is none of a folder");
    pattern->isNameFor(photo, name);
  }
}

void checkList(std::string_view text) {
  std::istringstream list{std::string(text)};
  for (const std::string& path : cli::pathsIn(list)) {
    require(!path.empty() && path.find('\0') == std::string::npos, "a path in a list is one");
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text = fuzzing::textOf(data, size);
  checkWords(text);
  checkPattern(text);
  checkList(text);
  return 0;
}
