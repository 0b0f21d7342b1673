#include "platform/own_names.h"

#include <cerrno>
#include <charconv>
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

}  // namespace

std::string ownNamePrefix(std::string_view prefix) {
  return std::string(prefix) + std::to_string(::getpid()) + "-";
}

bool isLeftBehind(std::string_view name, std::string_view prefix) {
  const pid_t owner = ownerOf(name, prefix);
  return owner > 0 && ::kill(owner, 0) != 0 && errno == ESRCH;
}

}  // namespace velmara
