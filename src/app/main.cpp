#include <cstdio>
#include <cstdlib>
#include <string>

#include "app/run_application.h"
#include "cli/commands.h"
#include "cli/options.h"
#include "platform/hand_over.h"

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
  const auto start = velmara::cli::windowStart(argc, argv);
  if (!start) return velmara::cli::runCommandLine(argc, argv);
  if (!hasDisplay()) {
    std::fputs(
        "velmara: there is no display to open a window on; velmara --help lists the commands\n",
        stderr);
    return 2;
  }
  if (!start->photo.empty() && !start->isNewWindow &&
      velmara::handOver(velmara::firstWindowAddress(), start->photo)) {
    return 0;
  }
  return velmara::runApplication(argc, argv, start->photo);
}
