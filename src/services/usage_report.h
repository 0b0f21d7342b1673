#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace velmara {

/// The usage report as it is sent: a property list in XML whose top is a dictionary, written anew
/// with a tabulator for each level and the keys in order. Nothing for anything else.
std::optional<std::string> rewritePropertyList(std::string_view xml);

/// The same for a file; nothing for one that cannot be read or is longer than 16 MiB.
std::optional<std::string> readUsageReport(const std::string& path);

}  // namespace velmara
