#pragma once

#include <optional>
#include <string>

#include "imaging/image_writer.h"

namespace velmara {

/// The format a file is in, by its contents, if it is one of those that are written too; nothing
/// for every other kind of file and for one that cannot be opened. Any thread.
std::optional<FileFormat> formatOfFile(const std::string& path);

}  // namespace velmara
