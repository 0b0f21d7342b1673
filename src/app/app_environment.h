#pragma once

#include <cstdlib>
#include <functional>
#include <optional>
#include <string>

#include "platform/bundle.h"
#include "platform/log.h"
#include "platform/panels.h"
#include "platform/user_defaults.h"
#include "platform/workspace.h"
#include "services/http_client.h"
#include "services/service_addresses.h"
#include "services/system_info.h"
#include "services/tracker.h"
#include "session/denoise_engine.h"

namespace velmara {

/// The folder of this user's application data: $XDG_DATA_HOME, by default ~/.local/share.
std::string applicationSupportDirectory();

/// What the application delegate works with: the desktop's part and the facts about this run. The
/// defaults are the program's; tests give it counterparts of their own.
struct AppEnvironment {
  /// The engine, and the desktop's part.
  const DenoiseEngine& engine;
  AlertPresenter& alerts;
  Panels& panels;
  Workspace& workspace;
  UserDefaults& defaults;
  /// Where the services are.
  ServiceAddresses addresses = configuredAddresses();
  /// The program's facts.
  BundleFacts bundle = mainBundle();
  /// The user's home and folder of application data, in the system's own bytes.
  std::string home = homeDirectory();
  std::string applicationSupport = applicationSupportDirectory();
  /// DO_NOT_TRACK: the install report is not sent.
  bool asksForNoTracking = velmara::asksForNoTracking(std::getenv("DO_NOT_TRACK"));
  /// The machine's; nothing where it cannot be read. Any thread.
  std::function<std::optional<std::string>()> serialNumber = [] {
    return SystemInfo::getSerialNumber();
  };
  /// How requests behave.
  HttpOptions http = {};
};

}  // namespace velmara
