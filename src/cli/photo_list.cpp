#include "cli/photo_list.h"

#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <fstream>
#include <iostream>
#include <iterator>
#include <sstream>
#include <system_error>
#include <utility>

#include "cli/terminal.h"

namespace velmara::cli {
namespace {

Result<std::vector<std::string>> pathsInFile(const std::string& file) {
  if (file == "-") return pathsIn(std::cin);
  errno = 0;
  std::ifstream list(file);
  std::vector<std::string> paths = pathsIn(list);
  if (!list.is_open() || list.bad()) {
    return Error{"cannot read " + file + ": " + std::generic_category().message(errno)};
  }
  return paths;
}

}  // namespace

std::vector<std::string> pathsIn(std::istream& list) {
  const std::string text{std::istreambuf_iterator<char>(list), {}};
  const char end = text.find('\0') == std::string::npos ? '\n' : '\0';
  std::vector<std::string> paths;
  std::istringstream lines(text);
  for (std::string path; std::getline(lines, path, end);) {
    if (!path.empty()) paths.push_back(path);
  }
  return paths;
}

Result<std::vector<BatchPhoto>> photosOf(const DenoiseOptions& options, bool& isWhole) {
  PhotoSearch search{options.inputs, options.isRecursive, options.naming.pattern,
                     options.naming.folder.value_or("")};
  if (options.filesFrom) {
    auto listed = pathsInFile(*options.filesFrom);
    if (!listed) return Error{listed.error()};
    search.paths.insert(search.paths.end(), listed->begin(), listed->end());
  }
  const auto tell = [&isWhole](const std::string& folder, const std::string& reason) {
    isWhole = false;
    std::fprintf(stderr, "velmara: %s: %s\n", folder.c_str(), reason.c_str());
  };
  return findPhotos(search, tell, cancelledByInterrupt());
}

std::vector<std::size_t> partOf(const DenoiseOptions& options, std::size_t photos) {
  const auto [number, parts] = options.part.value_or(std::pair<std::size_t, std::size_t>(1, 1));
  std::vector<std::size_t> own;
  for (std::size_t i = number - 1; i < photos; i += parts) own.push_back(i);
  return own;
}

}  // namespace velmara::cli
