#include "platform/temporary_files.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>
#include <QString>
#include <QTemporaryDir>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <filesystem>
#include <random>
#include <signal.h>
#include <string_view>
#include <sys/stat.h>
#include <sys/types.h>
#include <system_error>
#include <unistd.h>

#include "platform/log.h"

namespace velmara {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kDirectoryPrefix = "velmara-";
constexpr std::string_view kUnfinishedPrefix = ".velmara-";

// Machines may share these folders, and the number of a process means something on its own only.
std::string machinePrefix(std::string_view prefix) {
  char host[256] = {};
  if (::gethostname(host, sizeof host - 1) != 0) host[0] = '\0';
  std::string name(host);
  std::replace(name.begin(), name.end(), '/', '_');
  return std::string(prefix).append(name).append("@");
}

// The machine and the number of the process stand in the names it makes up, so that a later one
// knows what has been left behind.
std::string ownName(std::string_view prefix, std::string_view rest) {
  return machinePrefix(prefix).append(std::to_string(::getpid())).append("-").append(rest);
}

// Whether a name was made with that prefix by a process of this machine that is gone.
bool isLeftBehind(std::string_view name, std::string_view prefix) {
  const std::string here = machinePrefix(prefix);
  if (!name.starts_with(here)) return false;
  name.remove_prefix(here.size());
  pid_t owner = 0;
  const auto [end, failure] = std::from_chars(name.data(), name.data() + name.size(), owner);
  const bool wellFormed = failure == std::errc() && end != name.data() + name.size() && *end == '-';
  return wellFormed && owner > 0 && ::kill(owner, 0) != 0 && errno == ESRCH;
}

bool isOurs(const fs::path& folder) {
  struct stat status {};
  return ::lstat(folder.c_str(), &status) == 0 && S_ISDIR(status.st_mode) &&
         status.st_uid == ::geteuid();
}

void removeLeftovers(const fs::path& base) {
  std::error_code failure;
  for (const auto& entry : fs::directory_iterator(base, failure)) {
    const fs::path& path = entry.path();
    if (!isLeftBehind(path.filename().native(), kDirectoryPrefix) || !isOurs(path)) continue;
    std::error_code ignored;
    fs::remove_all(path, ignored);
  }
}

QTemporaryDir& ownDirectory() {
  static QTemporaryDir directory([] {
    const QString base = QDir::tempPath();
    removeLeftovers(QFile::encodeName(base).toStdString());
    return base + QLatin1Char('/') + QString::fromStdString(ownName(kDirectoryPrefix, "XXXXXX"));
  }());
  return directory;
}

fs::path notesFolder() {
  const QString data = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
  return fs::path(QFile::encodeName(data).toStdString()) / "velmara" / "unfinished";
}

std::string madeUpName() {
  std::random_device random;
  return ownName(kUnfinishedPrefix, QString::asprintf("%08x.tmp", random()).toStdString());
}

}  // namespace

const std::string& temporaryDirectory() {
  static const std::string path = [] {
    const QTemporaryDir& directory = ownDirectory();
    if (directory.isValid()) return QFile::encodeName(directory.path()).toStdString() + "/";
    logLine("cannot make a temporary directory in " + QDir::tempPath().toStdString());
    return std::string();
  }();
  return path;
}

void removeTemporaryDirectory() {
  ownDirectory().remove();
}

UnfinishedFile::UnfinishedFile(const std::string& folder) {
  const std::string name = madeUpName();
  path_ = folder + "/" + name;
  const fs::path notes = notesFolder();
  std::error_code failure;
  fs::create_directories(notes, failure);
  const fs::path file = fs::absolute(path_, failure);
  const std::string note = (notes / name).string();
  // Without a note the file can be written all the same.
  if (!failure && ::symlink(file.c_str(), note.c_str()) == 0) note_ = note;
}

UnfinishedFile::~UnfinishedFile() {
  if (!note_.empty()) ::unlink(note_.c_str());
}

void removeUnfinishedFiles() {
  std::error_code failure;
  for (const auto& note : fs::directory_iterator(notesFolder(), failure)) {
    std::error_code unreadable;
    const fs::path file = fs::read_symlink(note.path(), unreadable);
    const std::string name = note.path().filename().string();
    if (unreadable || file.filename() != name || !isLeftBehind(name, kUnfinishedPrefix)) continue;
    if (!fs::is_directory(file.parent_path(), unreadable)) continue;
    if (::unlink(file.c_str()) == 0 || errno == ENOENT) ::unlink(note.path().c_str());
  }
}

}  // namespace velmara
