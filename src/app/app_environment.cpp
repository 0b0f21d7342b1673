#include "app/app_environment.h"

#include <QFile>
#include <QStandardPaths>

namespace velmara {

std::string applicationSupportDirectory() {
  return QFile::encodeName(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation))
      .toStdString();
}

}  // namespace velmara
