#include "services/text.h"

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <QUtf8StringView>

#include <cctype>
#include <charconv>
#include <span>

namespace velmara {
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

std::string& replaceRows(std::span<const Row> table, std::string& text) {
  for (const Row& row : table) replaceAll(text, row);
  return text;
}

std::string formatted(std::chrono::system_clock::time_point time, const char* format) {
  const std::time_t seconds = std::chrono::system_clock::to_time_t(time);
  return QDateTime::fromSecsSinceEpoch(seconds).toString(QString::fromLatin1(format)).toStdString();
}

}  // namespace

std::string getDateStrInYYYYMMDDFormat(std::chrono::system_clock::time_point time) {
  return formatted(time, "yyyy-MM-dd");
}

std::string getDateInFormatNEW(std::chrono::system_clock::time_point time) {
  return formatted(time, "yyyyMMdd'T'HHmm");
}

std::string& xml::xmlSimpleEscape(std::string& text) {
  return replaceRows(kEscape, text);
}

std::string& xml::xmlSimpleEscapeNEW(std::string& text) {
  return replaceRows(kEscapeNew, text);
}

std::string& xml::xmlSimpleUnescape(std::string& text) {
  return replaceRows(kUnescape, text);
}

namespace StringEscaping {

std::string trim(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()))
      .trimmed()
      .toStdString();
}

std::string URLEncodedString(std::string_view text) {
  return QByteArray(text.data(), static_cast<qsizetype>(text.size()))
      .toPercentEncoding()
      .toStdString();
}

// The library's own decoder also takes a "%" that no digits follow.
std::optional<std::string> URLDecodedString(std::string_view text) {
  const auto isDigit = [&](std::size_t at) {
    return at < text.size() && std::isxdigit(static_cast<unsigned char>(text[at])) != 0;
  };
  std::string decoded;
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (text[at] != '%' || !isDigit(at + 1) || !isDigit(at + 2)) {
      decoded.push_back(text[at]);
      continue;
    }
    unsigned char byte = 0;
    std::from_chars(text.data() + at + 1, text.data() + at + 3, byte, 16);
    decoded.push_back(static_cast<char>(byte));
    at += 2;
  }
  if (!QUtf8StringView(decoded.data(), static_cast<qsizetype>(decoded.size())).isValidUtf8()) {
    return std::nullopt;
  }
  return decoded;
}

}  // namespace StringEscaping
}  // namespace velmara
