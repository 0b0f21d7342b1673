#include "services/recent_log.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string_view>
#include <system_error>
#include <vector>

#include "services/local_date.h"
#include "services/utf8.h"

namespace velmara {
namespace {

constexpr std::size_t kPiece = std::size_t{256} * 1024;
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
  if (text[0] == '\xC2' && text.starts_with("\xC2\x85")) return 2;
  if (text[0] == '\xE2' && (text.starts_with("\xE2\x80\xA8") || text.starts_with("\xE2\x80\xA9"))) {
    return 3;
  }
  return 0;
}

// Where the first newline character starts; the size if there is none.
std::size_t findNewline(std::string_view text) {
  for (std::size_t at = 0; at < text.size(); ++at) {
    const char byte = text[at];
    // Most bytes of a log are neither.
    if (byte > '\r' || (byte >= 0 && byte < '\n')) continue;
    if (newlineAt(text.substr(at)) != 0) return at;
  }
  return text.size();
}

bool beginsWithAny(std::string_view line, const std::vector<std::string>& days) {
  return std::any_of(days.begin(), days.end(),
                     [line](const std::string& day) { return line.starts_with(day); });
}

// The offset of the first line that begins with one of the days.
std::optional<std::streamoff> findRecentLine(std::ifstream& file,
                                             const std::vector<std::string>& days,
                                             const std::stop_token& stop) {
  // Enough of a piece's end is kept to see a whole newline and the longest day after it.
  constexpr std::size_t kKept = 32;
  std::string window;
  std::vector<char> piece(kPiece);
  std::streamoff windowOffset = 0;
  bool atLineStart = true;
  while (!stop.stop_requested()) {
    file.read(piece.data(), static_cast<std::streamsize>(piece.size()));
    window.append(piece.data(), static_cast<std::size_t>(file.gcount()));
    const bool last = file.gcount() == 0;
    const std::size_t enough =
        last ? window.size() : window.size() - std::min(window.size(), kKept);
    std::size_t at = 0;
    const std::string_view text = window;
    while (at < enough) {
      if (atLineStart && beginsWithAny(text.substr(at), days)) {
        return windowOffset + static_cast<std::streamoff>(at);
      }
      const std::size_t newline = at + findNewline(text.substr(at));
      atLineStart = newline < enough;
      at = atLineStart ? newline + newlineAt(text.substr(newline)) : enough;
    }
    if (last) return std::nullopt;
    window.erase(0, at);
    windowOffset += static_cast<std::streamoff>(at);
  }
  return std::nullopt;
}

// The file from an offset on, or the newest whole lines of that if it is too long.
std::string readFrom(std::ifstream& file, std::streamoff offset, std::size_t largest) {
  file.clear();
  file.seekg(0, std::ios::end);
  const std::streamoff end = file.tellg();
  const auto most = static_cast<std::streamoff>(largest);
  const bool tooLong = end - offset > most;
  const std::streamoff start = tooLong ? end - most : offset;
  if (start < 0 || end < start) return {};  // It became shorter meanwhile.
  std::string bytes(static_cast<std::size_t>(end - start), '\0');
  file.seekg(start);
  file.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  bytes.resize(static_cast<std::size_t>(file.gcount()));
  if (tooLong) {
    const std::size_t newline = findNewline(bytes);
    bytes.erase(0, newline < bytes.size()
                       ? newline + newlineAt(std::string_view(bytes).substr(newline))
                       : newline);
  }
  return bytes;
}

}  // namespace

std::string readLogsContent(const std::string& path, std::chrono::system_clock::time_point now,
                            const std::stop_token& stop, std::size_t largest) {
  std::error_code error;
  if (!std::filesystem::is_regular_file(path, error)) return {};  // A pipe would never end.
  std::ifstream file(path, std::ios::binary);
  const auto offset = findRecentLine(file, recentDays(now), stop);
  if (!offset || stop.stop_requested()) return {};
  const std::string recent = repairedUtf8(readFrom(file, *offset, largest));
  std::string lines;
  lines.reserve(recent.size() + 1);
  std::string_view rest = recent;
  while (!rest.empty()) {
    const std::size_t newline = findNewline(rest);
    lines.append(rest.substr(0, newline));
    if (newline == rest.size()) break;
    lines.push_back('\n');
    rest.remove_prefix(newline + newlineAt(rest.substr(newline)));
  }
  // The last line, which may be empty, is one too.
  return lines.append("\n");
}

}  // namespace velmara
