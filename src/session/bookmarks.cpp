#include "session/bookmarks.h"

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <utility>

namespace velmara {
namespace {

bool exists(const std::string& path) {
  std::error_code failure;
  return std::filesystem::exists(path, failure);
}

// Sets the error slot on failure and never clears it.
DefaultsData bookmarkOf(const std::string& path, std::error_code& error) {
  std::error_code failure;
  const std::string whole = std::filesystem::absolute(path, failure).string();
  if (!failure && !exists(whole))
    failure = std::make_error_code(std::errc::no_such_file_or_directory);
  if (failure) error = failure;
  return {whole.begin(), whole.end()};
}

// What cannot be a path: the store is a file that anybody may have edited.
std::optional<std::string> resolved(const DefaultsDictionary& entry) {
  const auto found = entry.find(defaults_keys::kPath);
  if (found == entry.end()) return std::nullopt;
  const auto* bookmark = std::get_if<DefaultsData>(&found->second);
  if (bookmark == nullptr || bookmark->empty() || bookmark->front() != '/') return std::nullopt;
  if (std::find(bookmark->begin(), bookmark->end(), 0) != bookmark->end()) return std::nullopt;
  return std::string(bookmark->begin(), bookmark->end());
}

}  // namespace

void saveBookmarkPathsFromTableView(const std::vector<PhotoFile>& arraySelectedImagesToProcess,
                                    UserDefaults& defaults) {
  DefaultsArray list;
  std::error_code error;
  for (const PhotoFile& photo : arraySelectedImagesToProcess) {
    DefaultsData bookmark = bookmarkOf(photo.filePath, error);
    if (error) continue;
    DefaultsDictionary entry;
    entry.emplace(defaults_keys::kPath, std::move(bookmark));
    list.push_back(std::move(entry));
  }
  defaults.setArray(defaults_keys::kSavedPaths, std::move(list));
  defaults.synchronize();
}

std::vector<SavedPath> savedPathsFromUserDefaults(bool /*startAccess*/,
                                                  const UserDefaults& defaults) {
  std::vector<SavedPath> paths;
  const auto stored = defaults.arrayForKey(defaults_keys::kSavedPaths);
  if (!stored) return paths;
  for (const DefaultsDictionary& entry : *stored) {
    auto path = resolved(entry);
    if (!path) continue;
    const auto state = entry.find(defaults_keys::kState);
    paths.push_back(
        {*std::move(path), state == entry.end() ? std::nullopt : std::optional(state->second)});
  }
  return paths;
}

std::optional<std::string> loadLastWorkedImageFromDefaults(
    std::vector<PhotoFile>& arraySelectedImagesToProcess, UserDefaults& defaults,
    const std::function<bool(const std::string& path)>& isInTrash) {
  bool hasSkipped = false;
  for (const SavedPath& saved : savedPathsFromUserDefaults(true, defaults)) {
    if (exists(saved.path) && !isInTrash(saved.path)) {
      arraySelectedImagesToProcess.push_back(PhotoFile::initWithFileUrl(saved.path));
    } else {
      hasSkipped = true;
    }
  }
  if (hasSkipped) saveBookmarkPathsFromTableView(arraySelectedImagesToProcess, defaults);
  if (arraySelectedImagesToProcess.empty()) return std::nullopt;
  return arraySelectedImagesToProcess.back().filePath;
}

}  // namespace velmara
