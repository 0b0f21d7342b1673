#pragma once

#include <string>

namespace velmara {

/// A number with a fixed count of decimals (the printf format "%.nf") and a point whatever the
/// user's locale is.
std::string fixedText(double value, int decimals);

}  // namespace velmara
