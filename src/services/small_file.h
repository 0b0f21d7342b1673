#pragma once

#include <cstddef>
#include <optional>
#include <string>

namespace velmara {

/// The bytes of a regular file that has no more than `largest` of them; nothing for a longer one or
/// one that cannot be read. Files of the kernel, which do not tell their size, are read too.
std::optional<std::string> readSmallFile(const std::string& path, std::size_t largest);

}  // namespace velmara
