#include "app/sheets/used_libraries.h"

#include <QtGlobal>

namespace velmara {

// The versions come from the build, as asking the libraries would load those that wait until they
// are needed.
std::vector<UsedLibrary> usedLibraries() {
  return {
      {"CLI11", CLI11_VERSION_USED, "BSD-3-Clause"},
      {"curl", CURL_VERSION_USED, "curl"},
      {"Exiv2", EXIV2_VERSION_USED, "GPL-2.0-or-later"},
      {"GLib", GLIB_VERSION_USED, "LGPL-2.1-or-later"},
      {"Highway", HWY_VERSION_USED, "Apache-2.0 OR BSD-3-Clause"},
      {"libmnl", MNL_VERSION_USED, "LGPL-2.1-or-later"},
      {"libplist", PLIST_VERSION_USED, "LGPL-2.1-or-later"},
      {"LibRaw", RAW_VERSION_USED, "LGPL-2.1-only OR CDDL-1.0"},
      {"libvips", VIPS_VERSION_USED, "LGPL-2.1-or-later"},
      {"PCRE2", PCRE2_VERSION_USED, "BSD-3-Clause"},
      {"Qt", qVersion(), "LGPL-3.0-only"},
  };
}

std::string versionsText(const std::string& version) {
  std::string text = "Velmara " + version + "\n";
  for (const UsedLibrary& library : usedLibraries()) {
    text += library.name + " " + library.version + "\n";
  }
  return text;
}

}  // namespace velmara
