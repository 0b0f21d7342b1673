#include "platform/temporary_directory.h"

#include <QDir>
#include <QFile>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

#include "platform/log.h"
#include "platform/unfinished_file.h"

namespace velmara {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kPrefix = "velmara-";

bool isOurs(const fs::path& folder) {
  struct stat status {};
  return ::lstat(folder.c_str(), &status) == 0 && S_ISDIR(status.st_mode) &&
         status.st_uid == ::geteuid();
}

void removeLeftovers(const fs::path& base) {
  std::error_code failure;
  for (const auto& entry : fs::directory_iterator(base, failure)) {
    if (!isLeftBehind(entry.path().filename().string(), kPrefix) || !isOurs(entry.path())) continue;
    std::error_code ignored;
    fs::remove_all(entry.path(), ignored);
  }
}

class OwnDirectory {
 public:
  OwnDirectory() {
    const std::string base = QFile::encodeName(QDir::tempPath()).toStdString();
    removeLeftovers(base);
    std::string name = base + "/" + ownNamePrefix(kPrefix) + "XXXXXX";
    if (::mkdtemp(name.data()) == nullptr) {
      logLine("cannot make a temporary directory in " + base);
      return;
    }
    path_ = name + "/";
  }
  OwnDirectory(const OwnDirectory&) = delete;
  OwnDirectory& operator=(const OwnDirectory&) = delete;
  ~OwnDirectory() { remove(); }

  void remove() const {
    std::error_code ignored;
    if (!path_.empty()) fs::remove_all(path_, ignored);
  }
  const std::string& path() const { return path_; }

 private:
  std::string path_;
};

const OwnDirectory& ownDirectory() {
  static const OwnDirectory directory;
  return directory;
}

}  // namespace

const std::string& temporaryDirectory() {
  return ownDirectory().path();
}

void removeTemporaryDirectory() {
  ownDirectory().remove();
}

}  // namespace velmara
