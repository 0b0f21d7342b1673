#pragma once

#include <optional>
#include <string>

namespace velmara {

/// What identifies the machine. Reads small files; any thread.
class SystemInfo {
 public:
  /// The serial number that the maker of the machine wrote into its firmware, nothing if there is
  /// none or this user may not read it (most systems show it to root only).
  static std::optional<std::string> getSerialNumber();

  /// A second reading, from the device tree of machines that have one; its texts for what is
  /// missing are those of serialNumberFromDeviceTree.
  static std::string computerSerialNumber();
};

/// The serial number in a folder of firmware facts (DMI): the product's, else the board's. Blank
/// ones and the fillers that makers leave in ("To be filled by O.E.M.") count as none.
std::optional<std::string> serialNumberFromDmi(const std::string& folder);

}  // namespace velmara
