#pragma once

#include <functional>
#include <string>

class QMenu;

namespace velmara {

class RecentPhotos;

/// The submenu with the photos opened last, made anew each time its parent opens: those that are
/// still there, by name and folder, and an item that forgets them all. Disabled while there are
/// none. `open` takes the path of the one chosen; it and the list outlive the menu. Main thread.
void addRecentMenu(QMenu& parent, const RecentPhotos& recent,
                   std::function<void(const std::string&)> open);

}  // namespace velmara
