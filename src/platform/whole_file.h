#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "base/result.h"

namespace velmara {

/// Writes a file whole or not at all: the bytes go to an unnamed (or hidden, temporary) file in the
/// same folder, reach the disk, and then take the target's place in one step. Whatever fails before
/// that step leaves an existing target as it was and no other file behind.
///
/// `path` is a file-system path in the system's own bytes. A symbolic link is followed, so that the
/// file it points to is replaced and the link stays. A new file gets the usual mode, a replaced one
/// keeps its permission bits. Any thread.
Status replaceFile(const std::string& path, std::span<const std::uint8_t> bytes);

/// Like replaceFile, but a path that already exists, also since the caller looked, is refused.
Status createFile(const std::string& path, std::span<const std::uint8_t> bytes);

/// The bytes of a regular file that has no more than `largest` of them; nothing for a longer one or
/// one that cannot be read. Files of the kernel, which do not tell their size, are read too.
std::optional<std::string> readSmallFile(const std::string& path, std::size_t largest);

}  // namespace velmara
