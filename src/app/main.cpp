#include <cstdio>
#include <cstdlib>
#include <string>

#include "app/run_application.h"
#include "cli/commands.h"
#include "cli/options.h"

namespace {

bool isSet(const char* variable) {
  const char* value = std::getenv(variable);
  return value != nullptr && *value != '\0';
}

bool hasDisplay() {
  return isSet("DISPLAY") || isSet("WAYLAND_DISPLAY") || isSet("QT_QPA_PLATFORM");
}

}  // namespace

int main(int argc, char** argv) {
  const std::string photo = velmara::cli::photoToOpen(argc, argv);
  if (argc > 1 && photo.empty()) return velmara::cli::runCommandLine(argc, argv);
  if (!hasDisplay()) {
    std::fputs(
        "velmara: there is no display to open a window on; velmara --help lists the commands\n",
        stderr);
    return 2;
  }
  return velmara::runApplication(argc, argv, photo);
}
