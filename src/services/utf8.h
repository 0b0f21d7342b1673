#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace velmara {

/// The number of UTF-16 code units of a UTF-8 text; bytes that are no valid UTF-8 count as one
/// replacement character for each that a decoder would write.
std::size_t utf16Length(std::string_view utf8);

/// Whether the bytes are valid UTF-8.
bool isValidUtf8(std::string_view bytes);

/// The text with every invalid sequence replaced by U+FFFD; valid text comes back unchanged.
std::string repairedUtf8(std::string_view bytes);

}  // namespace velmara
