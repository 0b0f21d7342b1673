#include "cli/output_file.h"

#include <cerrno>
#include <optional>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

#include "cli/interrupt.h"
#include "platform/atomic_file.h"

namespace velmara::cli {
namespace {

template <typename Identity>
std::optional<Identity> identityOf(const std::string& path) {
  struct stat status {};
  if (::stat(path.c_str(), &status) != 0) return std::nullopt;
  return Identity{status.st_dev, status.st_ino};
}

Status writeToStandardOutput(std::span<const std::uint8_t> bytes) {
  while (!bytes.empty()) {
    const ssize_t written = ::write(STDOUT_FILENO, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) {
      return Error{"cannot write to standard output: " + std::generic_category().message(errno)};
    }
    bytes = bytes.subspan(static_cast<std::size_t>(written));
  }
  return Done{};
}

}  // namespace

OutputFiles::OutputFiles(const std::vector<std::string>& inputs, bool mayReplace)
    : mayReplace_(mayReplace) {
  for (const std::string& input : inputs) {
    if (const auto identity = identityOf<FileIdentity>(input)) inputs_.insert(*identity);
  }
}

Status OutputFiles::check(const std::string& path) const {
  if (path == "-") return Done{};
  const auto identity = identityOf<FileIdentity>(path);
  if (!identity) return Done{};
  if (inputs_.contains(*identity)) return Error{"an input is never replaced: " + path};
  if (written_.contains(*identity)) return Error{"two photos would be written to " + path};
  if (!mayReplace_) return Error{path + " is there already (--force replaces it)"};
  return Done{};
}

Status OutputFiles::write(const std::string& path, std::span<const std::uint8_t> bytes) {
  if (path == "-") return writeToStandardOutput(bytes);
  if (Status allowed = check(path); !allowed) return allowed;
  Status status = [&] {
    const UninterruptedSection section;
    return mayReplace_ ? replaceFile(path, bytes) : createFile(path, bytes);
  }();
  if (!status) return status;
  if (const auto identity = identityOf<FileIdentity>(path)) written_.insert(*identity);
  return status;
}

}  // namespace velmara::cli
