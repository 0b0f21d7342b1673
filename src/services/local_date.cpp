#include "services/local_date.h"

#include <array>
#include <cstdio>
#include <ctime>

namespace velmara {
namespace {

std::tm localTime(std::chrono::system_clock::time_point time) {
  const std::time_t seconds = std::chrono::system_clock::to_time_t(time);
  std::tm parts{};
  ::localtime_r(&seconds, &parts);
  return parts;
}

}  // namespace

std::string getDateStrInYYYYMMDDFormat(std::chrono::system_clock::time_point time) {
  const std::tm parts = localTime(time);
  std::array<char, 64> text{};
  std::snprintf(text.data(), text.size(), "%04d-%02d-%02d", parts.tm_year + 1900, parts.tm_mon + 1,
                parts.tm_mday);
  return text.data();
}

std::string getDateInFormatNEW(std::chrono::system_clock::time_point time) {
  const std::tm parts = localTime(time);
  std::array<char, 64> text{};
  std::snprintf(text.data(), text.size(), "%04d%02d%02dT%02d%02d", parts.tm_year + 1900,
                parts.tm_mon + 1, parts.tm_mday, parts.tm_hour, parts.tm_min);
  return text.data();
}

}  // namespace velmara
