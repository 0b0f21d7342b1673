#include "session/bookmarks.h"

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
QByteArray bookmarkOf(const std::string& path, std::error_code& error) {
  std::error_code failure;
  const std::string whole = std::filesystem::absolute(path, failure).string();
  if (!failure && !exists(whole))
    failure = std::make_error_code(std::errc::no_such_file_or_directory);
  if (failure) error = failure;
  return QByteArray::fromStdString(whole);
}

QVariant valueIn(const QVariantMap& dictionary, std::string_view key) {
  return dictionary.value(QString::fromLatin1(key.data(), static_cast<qsizetype>(key.size())));
}

// What cannot be a path: the store is a file that anybody may have edited.
std::optional<std::string> resolved(const QVariantMap& entry) {
  const QByteArray bookmark = valueIn(entry, defaults_keys::kPath).toByteArray();
  if (!bookmark.startsWith('/') || bookmark.contains('\0')) return std::nullopt;
  return bookmark.toStdString();
}

}  // namespace

void saveBookmarkPathsFromTableView(const std::vector<PhotoFile>& arraySelectedImagesToProcess,
                                    UserDefaults& defaults) {
  QVariantList list;
  std::error_code error;
  for (const PhotoFile& photo : arraySelectedImagesToProcess) {
    const QByteArray bookmark = bookmarkOf(photo.filePath, error);
    if (!error) list.append(QVariantMap{{QString::fromLatin1(defaults_keys::kPath), bookmark}});
  }
  defaults.set(defaults_keys::kSavedPaths, list);
  defaults.synchronize();
}

std::vector<SavedPath> savedPathsFromUserDefaults(bool /*startAccess*/,
                                                  const UserDefaults& defaults) {
  std::vector<SavedPath> paths;
  for (const QVariantMap& entry : defaults.dictionaries(defaults_keys::kSavedPaths)) {
    if (auto path = resolved(entry)) {
      paths.push_back({*std::move(path), valueIn(entry, defaults_keys::kState)});
    }
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
