#include "platform/unfinished_file.h"

#include <QFile>
#include <QStandardPaths>

#include <array>
#include <cerrno>
#include <charconv>
#include <cstdio>
#include <filesystem>
#include <random>
#include <signal.h>
#include <system_error>
#include <unistd.h>

namespace velmara {
namespace {

// The process that a name such as "velmara-1234-Xa31bc" belongs to; 0 for any other name.
pid_t ownerOf(std::string_view name, std::string_view prefix) {
  if (!name.starts_with(prefix)) return 0;
  name.remove_prefix(prefix.size());
  pid_t pid = 0;
  const auto [end, failure] = std::from_chars(name.data(), name.data() + name.size(), pid);
  const bool wellFormed = failure == std::errc() && end != name.data() + name.size() && *end == '-';
  return wellFormed ? pid : 0;
}

namespace fs = std::filesystem;

constexpr const char* kUnfinishedPrefix = ".velmara-";

fs::path notesFolder() {
  const QString data = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
  return fs::path(QFile::encodeName(data).toStdString()) / "velmara" / "unfinished";
}

std::string madeUpName() {
  std::random_device random;
  std::array<char, 16> number{};
  std::snprintf(number.data(), number.size(), "%08x.tmp", static_cast<unsigned>(random()));
  return ownNamePrefix(kUnfinishedPrefix) + number.data();
}

}  // namespace

std::string ownNamePrefix(std::string_view prefix) {
  return std::string(prefix) + std::to_string(::getpid()) + "-";
}

bool isLeftBehind(std::string_view name, std::string_view prefix) {
  const pid_t owner = ownerOf(name, prefix);
  return owner > 0 && ::kill(owner, 0) != 0 && errno == ESRCH;
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
