#pragma once

#include <string>

namespace velmara {

/// The process's own temporary directory, ending in "/": made on first use with mode 0700 inside
/// the system's temporary directory, removed at the end of the process. What processes of ours that
/// are gone left there is removed when it is made. Empty if it cannot be made. Any thread.
const std::string& temporaryDirectory();

/// Removes it now, for a process that ends without its usual clean-up.
void removeTemporaryDirectory();

}  // namespace velmara
