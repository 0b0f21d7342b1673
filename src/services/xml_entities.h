#pragma once

#include <string>

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
