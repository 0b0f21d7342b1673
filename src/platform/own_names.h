#pragma once

#include <string>
#include <string_view>
#include <sys/types.h>

namespace velmara {

/// What begins the names of the files and folders a process of ours makes for itself: its number
/// stands in them, so that a later one knows what has been left behind.
std::string ownNamePrefix(std::string_view prefix);

/// Whether a name was made with that prefix by a process that is gone.
bool isLeftBehind(std::string_view name, std::string_view prefix);

}  // namespace velmara
