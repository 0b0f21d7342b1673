#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace velmara {

/// A text that may be too long to hold: each call gives its next piece, "" the end.
using TextSource = std::function<std::string()>;

/// A text in one piece.
inline TextSource textSource(std::string text) {
  return [text = std::move(text)]() mutable { return std::exchange(text, {}); };
}

/// Year, month and day of a time in the user's calendar and time zone, "2026-03-07".
std::string getDateStrInYYYYMMDDFormat(std::chrono::system_clock::time_point time);

/// With hour and minute, for file names: "20260307T0905".
std::string getDateInFormatNEW(std::chrono::system_clock::time_point time);

}  // namespace velmara

/// Replacements of XML's special characters by fixed tables. Each changes the text (UTF-8) in place
/// and returns it. A table is a sequence of whole-text replacements: each row works on what the row
/// before it left, and never on its own replacements.
namespace velmara::xml {

/// & " ' > < become entities. The ampersand goes first, so that no entity is escaped again.
std::string& xmlSimpleEscape(std::string& text);

/// For values inside a report that itself travels as escaped text: an ampersand survives two
/// passes of unescaping, and a less-than sign becomes the word "(lessthan)".
std::string& xmlSimpleEscapeNEW(std::string& text);

/// Entities become characters again. Quirks of the table that its users rely on: "&#x39;", "&#x92;"
/// and "&#x96;" are apostrophes, a carriage return becomes a newline, and since "&amp;" is undone
/// first, "&amp;lt;" ends as "<".
std::string& xmlSimpleUnescape(std::string& text);

}  // namespace velmara::xml

/// Helpers that give a changed copy of a text (UTF-8).
namespace velmara::StringEscaping {

/// The text without the white space and newline characters (of all Unicode) at its ends.
std::string trim(std::string_view text);

/// Copies passed through the operations above.
inline std::string xmlSimpleEscapeString(std::string text) {
  return std::move(xml::xmlSimpleEscape(text));
}
inline std::string xmlSimpleEscapeStringNEW(std::string text) {
  return std::move(xml::xmlSimpleEscapeNEW(text));
}
inline std::string xmlSimpleUnescapeString(std::string text) {
  return std::move(xml::xmlSimpleUnescape(text));
}

/// Percent-encoding (RFC 3986): every byte but the letters, the digits and "-", ".", "_", "~"
/// becomes "%" and two upper-case hexadecimal digits. A space becomes "%20".
std::string URLEncodedString(std::string_view text);

/// Every "%" with two hexadecimal digits becomes that byte; anything else stays, "+" too. Nothing
/// if the result is not valid UTF-8.
std::optional<std::string> URLDecodedString(std::string_view text);

}  // namespace velmara::StringEscaping
