#pragma once

#include <chrono>
#include <string>

namespace velmara {

/// Year, month and day of a time in the user's calendar and time zone, "2026-03-07".
std::string getDateStrInYYYYMMDDFormat(std::chrono::system_clock::time_point time);

/// With hour and minute, for file names: "20260307T0905".
std::string getDateInFormatNEW(std::chrono::system_clock::time_point time);

}  // namespace velmara
