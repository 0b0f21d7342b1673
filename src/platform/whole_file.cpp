#include "platform/whole_file.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>

#include "platform/descriptor.h"
#include "platform/temporary_files.h"

namespace velmara {
namespace {

namespace fs = std::filesystem;

constexpr mode_t kNewFileMode = 0666;

Error systemError(const std::string& what, int code) {
  return {what + ": " + std::generic_category().message(code)};
}

bool writeAll(int fd, std::span<const std::uint8_t> bytes) {
  while (!bytes.empty()) {
    const ssize_t written = ::write(fd, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return false;
    bytes = bytes.subspan(static_cast<std::size_t>(written));
  }
  return true;
}

/// Renames a file to a name that is free; false with errno set on failure.
bool moveToFree(const std::string& from, const std::string& to) {
  const unsigned onlyIfFree = RENAME_NOREPLACE;
  if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), onlyIfFree) == 0) return true;
  if (errno != EINVAL && errno != ENOSYS) return false;
  // Network file systems know no such renaming, but second names, which replace nothing either.
  if (::linkat(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), 0) == 0) {
    ::unlink(from.c_str());
    return true;
  }
  // Nor those: all that is left is to look first.
  struct stat there {};
  if (errno == EEXIST || ::lstat(to.c_str(), &there) == 0) {
    errno = EEXIST;
    return false;
  }
  return ::rename(from.c_str(), to.c_str()) == 0;
}

/// The bytes on their way into a folder, under no name where the file system can do that (then not
/// even a killed process leaves anything behind), else under a hidden one.
class PendingFile {
 public:
  explicit PendingFile(std::string folder) : folder_(std::move(folder)), file_(open()) {}
  PendingFile(const PendingFile&) = delete;
  PendingFile& operator=(const PendingFile&) = delete;
  ~PendingFile() {
    if (named_) ::unlink(temporary_->path().c_str());
  }

  bool isOpen() const { return file_.get() >= 0; }
  int fd() const { return file_.get(); }

  /// Takes the target's place; false with errno set on failure.
  bool moveTo(const std::string& target, bool mayReplace) {
    if (!named_ && !mayReplace) return linkTo(target);
    if (!named_) {
      temporary_.emplace(folder_);
      if (!linkTo(temporary_->path())) return false;
      named_ = true;
    }
    if (!file_.close()) return false;
    const std::string& name = temporary_->path();
    named_ = mayReplace ? ::rename(name.c_str(), target.c_str()) != 0 : !moveToFree(name, target);
    return !named_;
  }

 private:
  int open() {
    const int unnamed = ::open(folder_.c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, kNewFileMode);
    if (unnamed >= 0) return unnamed;
    temporary_.emplace(folder_);
    const int fd =
        ::open(temporary_->path().c_str(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, kNewFileMode);
    named_ = fd >= 0;
    return fd;
  }

  // By the descriptor where the privilege is there, else through /proc, which a bare root lacks.
  bool linkTo(const std::string& name) {
    const std::string self = "/proc/self/fd/" + std::to_string(file_.get());
    return ::linkat(file_.get(), "", AT_FDCWD, name.c_str(), AT_EMPTY_PATH) == 0 ||
           ::linkat(AT_FDCWD, self.c_str(), AT_FDCWD, name.c_str(), AT_SYMLINK_FOLLOW) == 0;
  }

  bool named_ = false;
  std::string folder_;
  std::optional<UnfinishedFile> temporary_;
  Descriptor file_;
};

std::string folderOf(const std::string& path) {
  const std::string folder = fs::path(path).parent_path().string();
  return folder.empty() ? "." : folder;
}

// Where the bytes have to go: through symbolic links, also through one whose file is not there yet.
std::string throughLinks(const std::string& path) {
  std::error_code failure;
  if (!fs::is_symlink(path, failure)) return path;
  const fs::path real = fs::weakly_canonical(path, failure);
  return failure ? path : real.string();
}

Status write(const std::string& path, std::span<const std::uint8_t> bytes, bool mayReplace) {
  const std::string target = mayReplace ? throughLinks(path) : path;
  struct stat existing {};
  const bool exists = ::stat(target.c_str(), &existing) == 0;
  if (exists && !mayReplace) return systemError("cannot write " + path, EEXIST);
  if (exists && !S_ISREG(existing.st_mode)) return Error{"not an ordinary file: " + path};

  const std::string folder = folderOf(target);
  PendingFile pending(folder);
  if (!pending.isOpen()) return systemError("cannot write " + path, errno);
  if (exists) ::fchmod(pending.fd(), existing.st_mode & 07777U);
  if (!writeAll(pending.fd(), bytes) || ::fsync(pending.fd()) != 0 ||
      !pending.moveTo(target, mayReplace)) {
    return systemError("cannot write " + path, errno);
  }
  // The name itself must reach the disk too; a file system that cannot do that has nothing to say.
  const Descriptor opened(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (opened.get() >= 0) ::fsync(opened.get());
  return Done{};
}

}  // namespace

Status replaceFile(const std::string& path, std::span<const std::uint8_t> bytes) {
  return write(path, bytes, true);
}

Status createFile(const std::string& path, std::span<const std::uint8_t> bytes) {
  return write(path, bytes, false);
}

std::optional<std::string> readSmallFile(const std::string& path, std::size_t largest) {
  QFile file(QFile::decodeName(path.c_str()));
  // Anything else, a pipe for instance, could make the read wait for ever.
  if (!QFileInfo(file).isFile() || !file.open(QIODevice::ReadOnly)) return std::nullopt;
  // A piece at a time: one read takes the memory for as much as it is asked for.
  constexpr std::size_t kPiece = std::size_t{64} * 1024;
  std::string bytes;
  while (bytes.size() <= largest) {
    const QByteArray piece =
        file.read(static_cast<qint64>(std::min(kPiece, largest + 1 - bytes.size())));
    if (piece.isEmpty()) break;
    bytes.append(piece.constData(), static_cast<std::size_t>(piece.size()));
  }
  const bool isWhole = file.error() == QFileDevice::NoError && bytes.size() <= largest;
  return isWhole ? std::optional(std::move(bytes)) : std::nullopt;
}

}  // namespace velmara
