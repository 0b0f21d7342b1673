#pragma once

#include <QKeySequence>
#include <QList>
#include <QString>
#include <QStringList>

#include <cstddef>
#include <vector>

namespace velmara {

/// An item of a menu as the menu names it, mnemonics and all; without keys if it has no shortcut.
struct MenuCommand {
  /// The menu's title and the item's, and its keys.
  QString menu;
  QString title;
  QList<QKeySequence> keys;
};

/// What is done, and each way of doing it in words for the user.
struct Shortcut {
  /// Both translated.
  QString action;
  QStringList keys;

  bool operator==(const Shortcut&) const = default;
};

/// The shortcuts below one heading, at least one.
struct ShortcutGroup {
  /// The heading, translated, and what stands below it.
  QString heading;
  std::vector<Shortcut> shortcuts;

  bool operator==(const ShortcutGroup&) const = default;
};

/// The commands that have shortcuts, grouped by their menus, both in their order.
std::vector<ShortcutGroup> menuShortcuts(const std::vector<MenuCommand>& commands);

/// What mouse and keys do on the picture itself, which no menu says. Translated.
ShortcutGroup pictureShortcuts();

/// How many of the groups belong in the first of two columns, so that the longer column is as short
/// as it can be with the groups in their order. At least one, if there are any.
std::size_t groupsInFirstColumn(const std::vector<ShortcutGroup>& groups);

}  // namespace velmara
