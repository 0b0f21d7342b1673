#include "services/local_date.h"

#include <QDateTime>

namespace velmara {
namespace {

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

}  // namespace velmara
