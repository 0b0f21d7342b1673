#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

class QMimeData;

namespace velmara {

/// The paths of a "text/uri-list" (RFC 2483), in its order and in the file system's own bytes,
/// which need not be UTF-8. What is no file of this machine, an address on the web or a path that
/// no file can have, has an empty path.
std::vector<std::string> pathsOfUriList(std::string_view uriList);

/// The files that are being dragged; nothing when the drag is not of files at all.
std::optional<std::vector<std::string>> draggedFiles(const QMimeData& data);

/// Whether a file is there and its contents are an image's; a folder is none.
bool isImageFile(const std::string& path);

}  // namespace velmara
