#include "services/utf8.h"

#include <QString>

namespace velmara {

std::size_t utf16Length(std::string_view utf8) {
  if (!isValidUtf8(utf8)) return utf16Length(repairedUtf8(utf8));
  std::size_t units = 0;
  for (const char byte : utf8) {
    const auto value = static_cast<unsigned char>(byte);
    const bool continues = (value & 0xC0U) == 0x80U;
    const bool opensSurrogatePair = value >= 0xF0U;
    units += (continues ? 0U : 1U) + (opensSurrogatePair ? 1U : 0U);
  }
  return units;
}

bool isValidUtf8(std::string_view bytes) {
  std::size_t at = 0;
  const auto byteAt = [&](std::size_t index) -> unsigned {
    return index < bytes.size() ? static_cast<unsigned char>(bytes[index]) : 0U;
  };
  const auto isWithin = [](unsigned value, unsigned low, unsigned high) {
    return low <= value && value <= high;
  };
  while (at < bytes.size()) {
    const unsigned first = byteAt(at);
    const unsigned second = byteAt(at + 1);
    std::size_t length = 0;
    bool good = false;
    if (first < 0x80) {
      length = 1;
      good = true;
    } else if (isWithin(first, 0xC2, 0xDF)) {
      length = 2;
      good = isWithin(second, 0x80, 0xBF);
    } else if (isWithin(first, 0xE0, 0xEF)) {
      // No overlong forms and no surrogates.
      length = 3;
      good = isWithin(second, first == 0xE0 ? 0xA0 : 0x80, first == 0xED ? 0x9F : 0xBF);
    } else if (isWithin(first, 0xF0, 0xF4)) {
      // No overlong forms and nothing above U+10FFFF.
      length = 4;
      good = isWithin(second, first == 0xF0 ? 0x90 : 0x80, first == 0xF4 ? 0x8F : 0xBF);
    }
    for (std::size_t rest = 2; rest < length; ++rest) {
      good = good && isWithin(byteAt(at + rest), 0x80, 0xBF);
    }
    if (!good) return false;
    at += length;
  }
  return true;
}

std::string repairedUtf8(std::string_view bytes) {
  if (isValidUtf8(bytes)) return std::string(bytes);
  return QString::fromUtf8(bytes.data(), static_cast<qsizetype>(bytes.size())).toStdString();
}

}  // namespace velmara
