#include "platform/unfinished_file.h"

#include <QFile>
#include <QStandardPaths>

#include <array>
#include <cstdio>
#include <filesystem>
#include <random>
#include <system_error>
#include <unistd.h>

#include "platform/own_names.h"

namespace velmara {
namespace {

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
