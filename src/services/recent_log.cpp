#include "services/recent_log.h"

#include <QFile>
#include <QFileInfo>
#include <QString>

#include <algorithm>
#include <string_view>
#include <vector>

#include "services/text.h"

namespace velmara {
namespace {

constexpr qint64 kReadAtOnce = qint64{256} * 1024;
constexpr int kDays = 16;

std::vector<std::string> recentDays(std::chrono::system_clock::time_point now) {
  std::vector<std::string> days;
  days.reserve(kDays);
  for (int day = 0; day < kDays; ++day) {
    days.push_back(getDateStrInYYYYMMDDFormat(now - day * std::chrono::seconds(86400)));
  }
  return days;
}

// The length of the newline character at the start of a text, 0 if there is none: U+000A to U+000D,
// U+0085, U+2028 and U+2029.
std::size_t newlineAt(std::string_view text) {
  if (text[0] >= '\n' && text[0] <= '\r') return 1;
  if (text.starts_with("\xC2\x85")) return 2;
  return text.starts_with("\xE2\x80\xA8") || text.starts_with("\xE2\x80\xA9") ? 3 : 0;
}

// Where the line after the first newline begins; the size if there is none.
std::size_t nextLine(std::string_view text) {
  for (std::size_t at = 0; at < text.size(); ++at) {
    const char byte = text[at];
    // Most bytes of a log are neither.
    if (byte > '\r' || (byte >= 0 && byte < '\n')) continue;
    if (const std::size_t length = newlineAt(text.substr(at)); length != 0) return at + length;
  }
  return text.size();
}

// The same text with every newline character as "\n".
std::string withPlainNewlines(QString text) {
  for (QChar& character : text) {
    const char16_t code = character.unicode();
    const bool isNewline =
        (code >= 0x0A && code <= 0x0D) || code == 0x85 || code == 0x2028 || code == 0x2029;
    if (isNewline) character = QLatin1Char('\n');
  }
  return text.toStdString();
}

// The length of a text without its last character, if that is no ASCII and may go on.
qsizetype withoutCutCharacter(const QByteArray& bytes) {
  constexpr qsizetype kLongestRest = 3;
  for (qsizetype back = 1; back <= std::min(kLongestRest, bytes.size() - 1); ++back) {
    const auto byte = static_cast<unsigned char>(bytes[bytes.size() - back]);
    if (byte >= 0xC0U) return bytes.size() - back;
    if (byte < 0x80U) break;
  }
  return bytes.size();
}

// The offset of the first line that begins with one of the last days; the file's end if none does.
qint64 findRecentLine(QFile& file, const std::vector<std::string>& days,
                      const std::stop_token& stop) {
  // Enough of a piece's end is kept to see a whole newline and the longest day after it.
  constexpr std::size_t kKept = 32;
  std::string window;
  qint64 windowOffset = 0;
  bool atLineStart = true;
  for (bool isLast = false; !isLast && !stop.stop_requested();) {
    const QByteArray piece = file.read(kReadAtOnce);
    window.append(piece.constData(), static_cast<std::size_t>(piece.size()));
    isLast = piece.isEmpty();
    const std::size_t enough = isLast ? window.size() : std::max(window.size(), kKept) - kKept;
    std::size_t at = 0;
    while (at < enough) {
      const std::string_view rest = std::string_view(window).substr(at);
      const auto begins = [rest](const std::string& day) { return rest.starts_with(day); };
      if (atLineStart && std::any_of(days.begin(), days.end(), begins)) {
        return windowOffset + static_cast<qint64>(at);
      }
      const std::size_t next = at + nextLine(rest);
      atLineStart = next <= enough;
      if (!atLineStart) {
        at = std::max(at + 2, enough) - 2;  // A newline may have begun there.
        break;
      }
      at = next;
    }
    window.erase(0, at);
    windowOffset += static_cast<qint64>(at);
  }
  return file.size();
}

}  // namespace

TextSource RecentLog::text() const {
  return [log = *this, at = begin_]() mutable -> std::string {
    if (at >= log.end_ || !log.file_->seek(at)) return {};
    QByteArray bytes = log.file_->read(std::min(kReadAtOnce, log.end_ - at));
    if (bytes.isEmpty()) return {};
    if (at + bytes.size() < log.end_) bytes.truncate(withoutCutCharacter(bytes));
    at += bytes.size();
    if (at == log.end_) bytes.append('\n');  // The last line, which may be empty, is one too.
    return withPlainNewlines(QString::fromUtf8(bytes));
  };
}

std::string RecentLog::newest(std::size_t most) const {
  const qint64 from = end_ - static_cast<qint64>(std::min(most, size()));
  if (!file_->seek(from)) return {};
  return withPlainNewlines(QString::fromUtf8(file_->read(end_ - from)));
}

std::optional<RecentLog> readLogsContent(const std::string& path,
                                         std::chrono::system_clock::time_point now,
                                         const std::stop_token& stop, std::size_t largest) {
  const auto file = std::make_shared<QFile>(QFile::decodeName(path.c_str()));
  // A pipe would never end.
  if (!QFileInfo(*file).isFile() || !file->open(QIODevice::ReadOnly | QIODevice::Unbuffered)) {
    return std::nullopt;
  }
  qint64 begin = findRecentLine(*file, recentDays(now), stop);
  const qint64 end = stop.stop_requested() ? begin : std::max(begin, file->size());
  const auto most = static_cast<qint64>(largest);
  if (end - begin > most && file->seek(end - most)) {
    const QByteArray newest = file->read(most);
    const std::string_view text(newest.constData(), static_cast<std::size_t>(newest.size()));
    begin = end - most + static_cast<qint64>(nextLine(text));
  }
  return RecentLog(file, begin, end);
}

}  // namespace velmara
