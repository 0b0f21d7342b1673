#pragma once

#include <optional>
#include <string>
#include <string_view>

/// Helpers that give a changed copy of a text (UTF-8).
namespace velmara::StringEscaping {

/// The text without the white space and newline characters (of all Unicode) at its ends.
std::string trim(std::string_view text);

/// A copy passed through xml::xmlSimpleEscape.
std::string xmlSimpleEscapeString(std::string text);

/// A copy passed through xml::xmlSimpleEscapeNEW.
std::string xmlSimpleEscapeStringNEW(std::string text);

/// A copy passed through xml::xmlSimpleUnescape.
std::string xmlSimpleUnescapeString(std::string text);

/// Percent-encoding (RFC 3986): every byte but the letters, the digits and "-", ".", "_", "~"
/// becomes "%" and two upper-case hexadecimal digits. A space becomes "%20".
std::string URLEncodedString(std::string_view text);

/// Every "%" with two hexadecimal digits becomes that byte; anything else stays, "+" too. Nothing
/// if the result is not valid UTF-8.
std::optional<std::string> URLDecodedString(std::string_view text);

}  // namespace velmara::StringEscaping
