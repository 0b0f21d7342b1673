#include "app/sheets/shortcut_list.h"

#include <QCoreApplication>
#include <QRegularExpression>

#include <algorithm>
#include <numeric>

namespace velmara {
namespace {

struct ShortcutsText {
  Q_DECLARE_TR_FUNCTIONS(ShortcutsSheet)
};

// A title as it is read: without its mnemonic, which some languages add in brackets, and without
// the dots that announce a question.
QString plainTitle(QString title) {
  static const QRegularExpression bracketed(QStringLiteral("\\s*\\(&[^&]\\)"));
  static const QRegularExpression mnemonic(QStringLiteral("&(.)"));
  static const QRegularExpression dots(QStringLiteral("\\s*(…|\\.\\.\\.)$"));
  return title.remove(bracketed).replace(mnemonic, QStringLiteral("\\1")).remove(dots);
}

QStringList nativeTexts(const QList<QKeySequence>& keys) {
  QStringList texts;
  for (const QKeySequence& sequence : keys) {
    texts << sequence.toString(QKeySequence::NativeText);
  }
  return texts;
}

}  // namespace

std::vector<ShortcutGroup> menuShortcuts(const std::vector<MenuCommand>& commands) {
  std::vector<ShortcutGroup> groups;
  for (const MenuCommand& command : commands) {
    if (command.keys.isEmpty()) continue;
    const QString heading = plainTitle(command.menu);
    if (groups.empty() || groups.back().heading != heading) groups.push_back({heading, {}});
    groups.back().shortcuts.push_back({plainTitle(command.title), nativeTexts(command.keys)});
  }
  return groups;
}

ShortcutGroup pictureShortcuts() {
  return {
      ShortcutsText::tr("On the Picture"),
      {{ShortcutsText::tr("Move It"), {ShortcutsText::tr("Drag"), ShortcutsText::tr("Arrow Keys")}},
       {ShortcutsText::tr("Zoom at the Pointer"),
        {ShortcutsText::tr("Ctrl+Wheel"), ShortcutsText::tr("Pinch")}},
       {ShortcutsText::tr("Show the Original"), {ShortcutsText::tr("Hold Space")}}}};
}

std::size_t groupsInFirstColumn(const std::vector<ShortcutGroup>& groups) {
  const auto lines = [&groups](std::size_t from, std::size_t to) {
    const auto begin = groups.begin();
    return std::accumulate(begin + static_cast<std::ptrdiff_t>(from),
                           begin + static_cast<std::ptrdiff_t>(to), std::size_t{0},
                           [](std::size_t sum, const ShortcutGroup& group) {
                             return sum + group.shortcuts.size() + 1;  // With its heading.
                           });
  };
  std::size_t best = groups.size();
  for (std::size_t count = groups.size(); count > 0; --count) {
    const auto longer = [&](std::size_t n) {
      return std::max(lines(0, n), lines(n, groups.size()));
    };
    if (longer(count) <= longer(best)) best = count;
  }
  return best;
}

}  // namespace velmara
