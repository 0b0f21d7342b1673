#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace velmara {

/// The usage report as it is sent: a property list, in XML or binary, whose top is a dictionary,
/// written anew in XML. Nothing for anything else, nor for one that is nested more than 64 deep or
/// would be longer than 16 MiB.
std::optional<std::string> rewritePropertyList(std::string_view bytes);

/// The same for a file; nothing for one that cannot be read.
std::optional<std::string> readUsageReport(const std::string& path);

}  // namespace velmara
