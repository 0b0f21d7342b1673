#include "platform/trash.h"

#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <QStorageInfo>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <pwd.h>
#include <unistd.h>

namespace velmara {
namespace {

std::string loginName() {
  // The user of the process, and not of the terminal, whom getlogin() would give.
  const passwd* entry = ::getpwuid(::getuid());
  return entry != nullptr ? entry->pw_name : "";
}

bool liesIn(const std::filesystem::path& path, const std::filesystem::path& folder) {
  if (folder.empty()) return false;
  const std::filesystem::path relative =
      path.lexically_normal().lexically_relative(folder.lexically_normal());
  return !relative.empty() && relative != "." && *relative.begin() != "..";
}

}  // namespace

TrashPlaces trashPlacesFor(const std::string& path) {
  const QString name = QFile::decodeName(path.c_str());
  const QString root = QStorageInfo(QFileInfo(name).absolutePath()).rootPath();
  const QString data = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
  return {.loginUser = loginName(),
          .userId = static_cast<unsigned>(::getuid()),
          .dataHome = QFile::encodeName(data).toStdString(),
          .volumeRoot = QFile::encodeName(root).toStdString()};
}

bool hasUserTrashPrefix(const std::string& path, const std::string& loginUser) {
  std::string lowered = path;
  std::transform(lowered.begin(), lowered.end(), lowered.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return lowered.starts_with("/users/" + loginUser + "/.trash/");
}

bool isInDesktopTrash(const std::string& path, const TrashPlaces& places) {
  const std::string user = std::to_string(places.userId);
  if (!places.dataHome.empty() && liesIn(path, std::filesystem::path(places.dataHome) / "Trash")) {
    return true;
  }
  if (places.volumeRoot.empty()) return false;
  const std::filesystem::path root(places.volumeRoot);
  return liesIn(path, root / (".Trash-" + user)) || liesIn(path, root / ".Trash" / user);
}

bool isInTrash(const std::string& path, const TrashPlaces& places) {
  return hasUserTrashPrefix(path, places.loginUser) || isInDesktopTrash(path, places);
}

}  // namespace velmara
