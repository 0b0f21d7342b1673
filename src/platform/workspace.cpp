#include "platform/workspace.h"

#include <QFile>
#include <QFileInfo>
#include <QMimeDatabase>

#include <fcntl.h>
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

}  // namespace velmara
