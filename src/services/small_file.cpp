#include "services/small_file.h"

#include <QFile>
#include <QFileInfo>

namespace velmara {

std::optional<std::string> readSmallFile(const std::string& path, std::size_t largest) {
  QFile file(QFile::decodeName(path.c_str()));
  // Anything else, a pipe for instance, could make the read wait for ever.
  if (!QFileInfo(file).isFile() || !file.open(QIODevice::ReadOnly)) return std::nullopt;
  const QByteArray bytes = file.read(static_cast<qint64>(largest) + 1);
  const bool isWhole = file.error() == QFileDevice::NoError;
  if (!isWhole || static_cast<std::size_t>(bytes.size()) > largest) return std::nullopt;
  return bytes.toStdString();
}

}  // namespace velmara
