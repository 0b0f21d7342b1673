#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace velmara {

/// What identifies the machine. Reads small files; any thread.
class SystemInfo {
 public:
  /// The serial number that the maker of the machine wrote into its firmware, nothing if there is
  /// none or this user may not read it (most systems show it to root only).
  static std::optional<std::string> getSerialNumber();

  /// A second reading, from the device tree of machines that have one.
  static std::string computerSerialNumber();
};

/// The serial number in a folder of firmware facts (DMI): the product's, else the board's. Blank
/// ones and the fillers that makers leave in ("To be filled by O.E.M.") count as none.
std::optional<std::string> serialNumberFromDmi(const std::string& folder);

/// The serial number in the property "serial-number" of an unpacked device tree, which is searched
/// for in the folder and all below it. Its bytes hold strings that end in NUL; the second one
/// counts, up to its NUL or the end of the data, and it is empty if there is none. "null" if the
/// property is missing; "" if the folder is, or if the property is no file.
std::string serialNumberFromDeviceTree(const std::string& root);

}  // namespace velmara
