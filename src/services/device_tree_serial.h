#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace velmara {

/// The serial number in the property "serial-number" of a device tree. The bytes hold strings that
/// end in NUL; the second one counts, up to its NUL or the end of the data, and it is empty if
/// there is none. A property that is missing (nothing) gives "null".
std::string serialNumberFromDeviceTree(std::optional<std::string_view> property);

/// Reads that property from an unpacked device tree, searching the folder and all below it; "" if
/// the folder does not exist or the property is no file.
std::string readDeviceTreeSerialNumber(const std::string& root);

}  // namespace velmara
