#include "services/xml_entities.h"

#include <span>
#include <string_view>

namespace velmara::xml {
namespace {

struct Row {
  std::string_view search;
  std::string_view replacement;
};

constexpr Row kEscape[] = {
    {"&", "&amp;"}, {"\"", "&quot;"}, {"'", "&#x27;"}, {">", "&gt;"}, {"<", "&lt;"},
};

constexpr Row kEscapeNew[] = {
    {"&", "&amp;amp;"}, {"\"", "&quot;"}, {"'", "&#x27;"}, {">", "&gt;"}, {"<", "(lessthan)"},
};

constexpr Row kUnescape[] = {
    {"&amp;", "&"},
    {"&quot;", "\""},
    {"&#x27;", "'"},
    {"&#x39;", "'"},
    {"&#x92;", "'"},
    {"&#x96;", "'"},
    {"&#x000D;", "\n"},
    {"&#x000A;", "\n"},
    // Never found any more: the two rows above have replaced both halves.
    {"&#x000D;&#x000A;", "\n"},
    {"&gt;", ">"},
    {"&lt;", "<"},
};

// One pass that copies: replacing in place would move the tail of a long text at every hit.
void replaceAll(std::string& text, const Row& row) {
  std::size_t hit = text.find(row.search);
  if (hit == std::string::npos) return;
  std::string result;
  result.reserve(text.size() + text.size() / 8);
  std::size_t copied = 0;
  for (; hit != std::string::npos; hit = text.find(row.search, copied)) {
    result.append(text, copied, hit - copied).append(row.replacement);
    copied = hit + row.search.size();
  }
  result.append(text, copied);
  text = std::move(result);
}

std::string& replaceAll(std::span<const Row> table, std::string& text) {
  for (const Row& row : table) replaceAll(text, row);
  return text;
}

}  // namespace

std::string& xmlSimpleEscape(std::string& text) {
  return replaceAll(kEscape, text);
}
std::string& xmlSimpleEscapeNEW(std::string& text) {
  return replaceAll(kEscapeNew, text);
}
std::string& xmlSimpleUnescape(std::string& text) {
  return replaceAll(kUnescape, text);
}

}  // namespace velmara::xml
