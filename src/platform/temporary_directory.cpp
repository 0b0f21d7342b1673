#include "platform/temporary_directory.h"

#include <QDir>
#include <QFile>

#include <charconv>
#include <cstdlib>
#include <filesystem>
#include <signal.h>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

#include "platform/log.h"

namespace velmara {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kPrefix = "velmara-";

bool isOurs(const fs::path& folder) {
  struct stat status {};
  return ::lstat(folder.c_str(), &status) == 0 && S_ISDIR(status.st_mode) &&
         status.st_uid == ::geteuid();
}

// The process that a name such as "velmara-1234-Xa31bc" belongs to; 0 for any other name.
pid_t ownerOf(std::string_view name) {
  if (!name.starts_with(kPrefix)) return 0;
  name.remove_prefix(kPrefix.size());
  pid_t pid = 0;
  const auto [end, failure] = std::from_chars(name.data(), name.data() + name.size(), pid);
  const bool wellFormed = failure == std::errc() && end != name.data() + name.size() && *end == '-';
  return wellFormed ? pid : 0;
}

void removeLeftovers(const fs::path& base) {
  std::error_code failure;
  for (const auto& entry : fs::directory_iterator(base, failure)) {
    const pid_t owner = ownerOf(entry.path().filename().string());
    if (owner <= 0 || !isOurs(entry.path())) continue;
    if (::kill(owner, 0) == 0 || errno != ESRCH) continue;
    std::error_code ignored;
    fs::remove_all(entry.path(), ignored);
  }
}

class OwnDirectory {
 public:
  OwnDirectory() {
    const std::string base = QFile::encodeName(QDir::tempPath()).toStdString();
    removeLeftovers(base);
    std::string name = base + "/" + std::string(kPrefix) + std::to_string(::getpid()) + "-XXXXXX";
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
