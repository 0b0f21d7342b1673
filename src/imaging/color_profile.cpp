#include "imaging/color_profile.h"

#include <QString>
#include <QStringDecoder>
#include <QtEndian>

#include <cstring>
#include <string_view>

namespace velmara {
namespace {

constexpr std::size_t kHeaderBytes = 128;
constexpr std::size_t kTagEntryBytes = 12;

std::uint32_t bigEndian(std::span<const std::uint8_t> bytes, std::size_t at) {
  return qFromBigEndian<std::uint32_t>(bytes.data() + at);
}

bool hasSignature(std::span<const std::uint8_t> bytes, std::size_t at, std::string_view text) {
  return std::memcmp(bytes.data() + at, text.data(), text.size()) == 0;
}

/// The bytes of a tag; empty if there is none or it leaves the profile.
std::span<const std::uint8_t> tagOf(std::span<const std::uint8_t> profile, std::string_view name) {
  if (profile.size() < kHeaderBytes + 4) return {};
  const std::size_t count = bigEndian(profile, kHeaderBytes);
  for (std::size_t i = 0; i < count; ++i) {
    const std::size_t at = kHeaderBytes + 4 + i * kTagEntryBytes;
    if (at + kTagEntryBytes > profile.size()) return {};
    if (!hasSignature(profile, at, name)) continue;
    const std::size_t offset = bigEndian(profile, at + 4);
    const std::size_t size = bigEndian(profile, at + 8);
    if (offset > profile.size() || size > profile.size() - offset) return {};
    return profile.subspan(offset, size);
  }
  return {};
}

// textDescriptionType of version 2 profiles: a counted ASCII text.
std::string plainDescription(std::span<const std::uint8_t> tag) {
  if (tag.size() < 12) return {};
  std::string text;
  const std::size_t count = bigEndian(tag, 8);
  for (std::size_t i = 0; i < count && 12 + i < tag.size() && tag[12 + i] != 0; ++i) {
    if (tag[12 + i] < 0x80) text.push_back(static_cast<char>(tag[12 + i]));
  }
  return text;
}

// multiLocalizedUnicodeType of version 4 profiles: the first of its languages.
std::string localizedDescription(std::span<const std::uint8_t> tag) {
  if (tag.size() < 28 || bigEndian(tag, 8) == 0) return {};
  const std::size_t length = bigEndian(tag, 20);
  const std::size_t offset = bigEndian(tag, 24);
  if (offset > tag.size() || length > tag.size() - offset) return {};
  const QByteArrayView text(tag.data() + offset, static_cast<qsizetype>(length));
  const QString name = QStringDecoder(QStringDecoder::Utf16BE)(text);
  return name.left(name.indexOf(QChar(u'\0'))).toStdString();
}

}  // namespace

std::optional<PictureColors> profileColors(std::span<const std::uint8_t> profile) {
  if (profile.size() < kHeaderBytes + 4 || !hasSignature(profile, 36, "acsp") ||
      bigEndian(profile, 0) > profile.size()) {
    return std::nullopt;
  }
  if (hasSignature(profile, 16, "RGB ")) return PictureColors::rgb;
  if (hasSignature(profile, 16, "GRAY")) return PictureColors::gray;
  if (hasSignature(profile, 16, "CMYK")) return PictureColors::cmyk;
  return std::nullopt;
}

std::string profileName(std::span<const std::uint8_t> profile) {
  const std::span<const std::uint8_t> tag = tagOf(profile, "desc");
  if (tag.size() < 12) return {};
  return hasSignature(tag, 0, "mluc") ? localizedDescription(tag) : plainDescription(tag);
}

}  // namespace velmara
