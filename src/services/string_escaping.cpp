#include "services/string_escaping.h"

#include <QChar>
#include <QString>

#include "services/utf8.h"
#include "services/xml_entities.h"

namespace velmara::StringEscaping {
namespace {

// The spaces of every script, the tabulator and the newlines; none needs a surrogate pair.
bool isWhiteSpaceOrNewline(QChar character) {
  const char16_t code = character.unicode();
  return (code >= 0x09 && code <= 0x0D) || code == 0x85 ||
         character.category() == QChar::Separator_Space ||
         character.category() == QChar::Separator_Line ||
         character.category() == QChar::Separator_Paragraph;
}

// Letters and digits of ASCII, whatever the locale.
bool isUnreserved(char byte) {
  return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') ||
         (byte >= '0' && byte <= '9') || byte == '-' || byte == '.' || byte == '_' || byte == '~';
}

int hexadecimalDigit(char digit) {
  if (digit >= '0' && digit <= '9') return digit - '0';
  if (digit >= 'A' && digit <= 'F') return digit - 'A' + 10;
  if (digit >= 'a' && digit <= 'f') return digit - 'a' + 10;
  return -1;
}

}  // namespace

std::string trim(std::string_view text) {
  const QString whole = QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
  qsizetype begin = 0;
  qsizetype end = whole.size();
  while (begin < end && isWhiteSpaceOrNewline(whole[begin])) ++begin;
  while (end > begin && isWhiteSpaceOrNewline(whole[end - 1])) --end;
  return whole.sliced(begin, end - begin).toStdString();
}

std::string xmlSimpleEscapeString(std::string text) {
  return std::move(xml::xmlSimpleEscape(text));
}

std::string xmlSimpleEscapeStringNEW(std::string text) {
  return std::move(xml::xmlSimpleEscapeNEW(text));
}

std::string xmlSimpleUnescapeString(std::string text) {
  return std::move(xml::xmlSimpleUnescape(text));
}

std::string URLEncodedString(std::string_view text) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string encoded;
  encoded.reserve(text.size());
  for (const char byte : text) {
    if (isUnreserved(byte)) {
      encoded.push_back(byte);
    } else {
      const auto value = static_cast<unsigned char>(byte);
      encoded.append({'%', kDigits[value >> 4U], kDigits[value & 0x0FU]});
    }
  }
  return encoded;
}

std::optional<std::string> URLDecodedString(std::string_view text) {
  std::string decoded;
  decoded.reserve(text.size());
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (text[at] == '%' && at + 2 < text.size()) {
      const int high = hexadecimalDigit(text[at + 1]);
      const int low = hexadecimalDigit(text[at + 2]);
      if (high >= 0 && low >= 0) {
        decoded.push_back(static_cast<char>(high * 16 + low));
        at += 2;
        continue;
      }
    }
    decoded.push_back(text[at]);
  }
  if (!isValidUtf8(decoded)) return std::nullopt;
  return decoded;
}

}  // namespace velmara::StringEscaping
