#pragma once

#include <string>
#include <string_view>

#include "platform/memory_user_defaults.h"

namespace velmara {

/// Where the settings of this user live: the file "settings.json" in our folder of the desktop's
/// configuration folder ($XDG_CONFIG_HOME, by default ~/.config).
std::string userDefaultsPath();

/// The settings in one JSON file, read when the object is made and written whole by synchronize. A
/// missing file is an empty store; one that cannot be understood is logged and taken as empty, and
/// is overwritten by the next synchronize.
class FileUserDefaults final : public MemoryUserDefaults {
 public:
  FileUserDefaults(std::string identifier, std::string path);

  bool synchronize() override;
  void removePersistentDomain(std::string_view identifier) override;

 private:
  void read();

  std::string path_;
};

}  // namespace velmara
