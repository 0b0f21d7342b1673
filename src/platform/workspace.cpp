#include "platform/workspace.h"

#include <QFile>
#include <QFileInfo>
#include <QMimeDatabase>

namespace velmara {

std::string typeOfFile(const std::string& path) {
  const QFileInfo info(QFile::decodeName(path.c_str()));
  if (path.empty() || !info.exists()) return {};
  return QMimeDatabase().mimeTypeForFile(info).name().toStdString();
}

bool typeConformsToImage(std::string_view mimeType) {
  constexpr std::string_view kImage = "image/";
  return mimeType.size() > kImage.size() && mimeType.starts_with(kImage);
}

}  // namespace velmara
