#include "platform/workspace.h"

#include <QFile>
#include <QFileInfo>
#include <QMimeDatabase>
#include <QStandardPaths>
#include <QStorageInfo>

#include <algorithm>
#include <cctype>
#include <fcntl.h>
#include <filesystem>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

namespace velmara {
namespace {

// Of a name that is no text in the system's encoding: the toolkit would look for another one.
std::string typeOfUndecodableFile(const std::string& path, const QString& name) {
  struct stat status {};
  if (::stat(path.c_str(), &status) != 0) return {};
  if (S_ISDIR(status.st_mode)) return "inode/directory";
  if (!S_ISREG(status.st_mode)) return "application/octet-stream";
  const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (fd < 0) return QMimeDatabase().mimeTypeForFile(name).name().toStdString();
  QFile file;
  if (!file.open(fd, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle)) {
    ::close(fd);
    return {};
  }
  return QMimeDatabase().mimeTypeForFileNameAndData(name, &file).name().toStdString();
}

// The user of the process, and not of the terminal, whom getlogin() would give.
std::string loginName() {
  const passwd* entry = ::getpwuid(::getuid());
  return entry != nullptr ? entry->pw_name : "";
}

bool liesIn(const std::filesystem::path& path, const std::filesystem::path& folder) {
  const std::filesystem::path relative =
      path.lexically_normal().lexically_relative(folder.lexically_normal());
  return !relative.empty() && relative != "." && *relative.begin() != "..";
}

}  // namespace

std::string typeOfFile(const std::string& path) {
  if (path.empty()) return {};
  const QString name = QFile::decodeName(path.c_str());
  if (QFile::encodeName(name).toStdString() != path) return typeOfUndecodableFile(path, name);
  const QFileInfo info(name);
  if (!info.exists()) return {};
  return QMimeDatabase().mimeTypeForFile(info).name().toStdString();
}

bool typeConformsToImage(std::string_view mimeType) {
  constexpr std::string_view kImage = "image/";
  return mimeType.size() > kImage.size() && mimeType.starts_with(kImage);
}

std::string picturesDirectory() {
  return QFile::encodeName(QStandardPaths::writableLocation(QStandardPaths::PicturesLocation))
      .toStdString();
}

TrashPlaces trashPlacesFor(const std::string& path) {
  const QString name = QFile::decodeName(path.c_str());
  const QString root = QStorageInfo(QFileInfo(name).absolutePath()).rootPath();
  const QString data = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
  return {.loginUser = loginName(),
          .userId = static_cast<unsigned>(::getuid()),
          .dataHome = QFile::encodeName(data).toStdString(),
          .volumeRoot = QFile::encodeName(root).toStdString()};
}

bool isInTrash(const std::string& path, const TrashPlaces& places) {
  std::string lowered = path;
  std::transform(lowered.begin(), lowered.end(), lowered.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  const std::filesystem::path root(places.volumeRoot);
  const std::string user = std::to_string(places.userId);
  return lowered.starts_with("/users/" + places.loginUser + "/.trash/") ||
         liesIn(path, std::filesystem::path(places.dataHome) / "Trash") ||
         liesIn(path, root / (".Trash-" + user)) || liesIn(path, root / ".Trash" / user);
}

}  // namespace velmara
