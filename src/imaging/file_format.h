#pragma once

#include <optional>

#include "imaging/file_kind.h"
#include "imaging/image_writer.h"

namespace velmara {

/// The format that a kind of file is written in; nothing for the kinds that are only read.
std::optional<FileFormat> formatOf(FileKind kind);

}  // namespace velmara
