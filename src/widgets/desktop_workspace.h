#pragma once

#include "platform/workspace.h"

namespace velmara {

/// The workspace of this desktop: addresses go to the user's default program for them.
class DesktopWorkspace final : public Workspace {
 public:
  bool openURL(const std::string& url, bool activates) override;
  void showInFolder(const std::string& path) override;
  void showInFront(QObject& window) override;
};

}  // namespace velmara
