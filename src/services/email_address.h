#pragma once

#include <string_view>

namespace velmara {

/// Whether the whole text is an e-mail address by the form's pattern, which knows lower-case
/// letters only. Takes time in proportion to the length, whatever the text. Any thread.
bool validateEmail(std::string_view address);

}  // namespace velmara
