#pragma once

#include <optional>
#include <string>

namespace velmara {

/// What identifies the machine. Reads small files; any thread.
class SystemInfo {
 public:
  /// The serial number that the maker of the machine wrote into its firmware, out of a folder of
  /// firmware facts (DMI): the product's, else the board's. Blank ones and the fillers that makers
  /// leave in ("To be filled by O.E.M.") count as none. Nothing if there is none or this user may
  /// not read it (most systems show it to root only).
  static std::optional<std::string> getSerialNumber(
      const std::string& folder = "/sys/class/dmi/id");

  /// A second reading, from the property "serial-number" of an unpacked device tree, which is
  /// searched for in the folder and all below it. Its bytes hold strings that end in NUL; the
  /// second one counts, up to its NUL or the end of the data, and it is empty if there is none.
  /// "null" if the property is missing; "" if the folder is, or if the property is no file.
  static std::string computerSerialNumber(
      const std::string& root = "/sys/firmware/devicetree/base");
};

}  // namespace velmara
