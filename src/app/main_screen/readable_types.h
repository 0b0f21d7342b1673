#pragma once

#include <string>
#include <vector>

namespace velmara {

/// The extensions of the picture files that can be opened, without the dot, each in lower and in
/// upper case: cameras write "JPG".
std::vector<std::string> readableFileTypes();

/// Whether an extension is one of them, exactly as written.
bool isReadableFileType(const std::string& fileExtension);

}  // namespace velmara
