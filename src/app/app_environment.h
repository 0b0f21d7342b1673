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
  const DenoiseEngine& engine;
  AlertPresenter& alerts;
  Panels& panels;
  Workspace& workspace;
  UserDefaults& defaults;
  ServiceAddresses addresses = configuredAddresses();
  BundleFacts bundle = mainBundle();
  std::string home = homeDirectory();
  std::string applicationSupport = applicationSupportDirectory();
  /// DO_NOT_TRACK: the install report is not sent.
  bool asksForNoTracking = velmara::asksForNoTracking(std::getenv("DO_NOT_TRACK"));
  std::function<std::optional<std::string>()> serialNumber = [] {
    return SystemInfo::getSerialNumber();
  };
  HttpOptions http = {};
};

}  // namespace velmara
