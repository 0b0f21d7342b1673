#pragma once

#include <string>

#include "base/result.h"

class QMimeData;

namespace velmara {

/// The path of what is to be opened for a clipboard with a picture on it. A file of the user's is
/// taken where it is; the bytes of a PNG, TIFF or JPEG go as they are, with profile and metadata,
/// into a new file of the folder, and any other picture as PNG. An error says that there is none,
/// or why it could not be written. Main thread.
Result<std::string> pastedPicture(const QMimeData& clipboard, const std::string& folder);

}  // namespace velmara
