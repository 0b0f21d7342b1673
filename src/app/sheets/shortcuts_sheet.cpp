#include "app/sheets/shortcuts_sheet.h"

#include <QGridLayout>
#include <QLabel>

#include "app/sheets/sheet_title.h"
#include "ui_ShortcutsSheet.h"
#include "widgets/desktop_alerts.h"

namespace velmara {
namespace {

constexpr int kGapBetweenGroups = 14;
constexpr int kGapBetweenKeys = 5;

QLabel* label(const QString& text, const char* role, QWidget* parent) {
  auto* view = new QLabel(text, parent);
  view->setTextFormat(Qt::PlainText);
  if (role != nullptr) view->setProperty("role", QLatin1String(role));
  return view;
}

}  // namespace

ShortcutsSheet::ShortcutsSheet(const std::vector<ShortcutGroup>& groups, QWidget* mainWindow)
    : QDialog(mainWindow, Qt::Dialog | Qt::FramelessWindowHint),
      ui_(std::make_unique<Ui::ShortcutsSheet>()) {
  ui_->setupUi(this);
  setAttribute(Qt::WA_StyledBackground);
  ui_->lblShortcutsTitle->setFont(sheetTitleFont(font()));
  const std::size_t first = groupsInFirstColumn(groups);
  for (std::size_t i = 0; i < groups.size(); ++i) {
    addGroup(i < first ? *ui_->vwFirstColumn : *ui_->vwSecondColumn, groups[i]);
  }
  // The shorter column begins at the top too.
  for (QGridLayout* column : {ui_->vwFirstColumn, ui_->vwSecondColumn}) {
    column->setRowStretch(column->rowCount(), 1);
  }
  connect(ui_->btnCloseShortcuts, &QPushButton::clicked, this, &ShortcutsSheet::accept);
}

ShortcutsSheet::~ShortcutsSheet() = default;

void ShortcutsSheet::addGroup(QGridLayout& column, const ShortcutGroup& group) {
  // A grid that is empty claims one row, as one with a single row does.
  int row = column.count() == 0 ? 0 : column.rowCount();
  if (row > 0) column.setRowMinimumHeight(row++, kGapBetweenGroups);
  column.addWidget(label(group.heading, "caption", this), row++, 0, 1, 2);
  for (const Shortcut& shortcut : group.shortcuts) {
    column.addWidget(label(shortcut.action, nullptr, this), row, 0);
    column.addWidget(keyCaps(shortcut.keys), row++, 1, Qt::AlignRight | Qt::AlignVCenter);
  }
}

QWidget* ShortcutsSheet::keyCaps(const QStringList& keys) {
  auto* caps = new QWidget(this);
  auto* layout = new QHBoxLayout(caps);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(kGapBetweenKeys);
  for (const QString& key : keys) {
    QLabel* cap = label(key, "key", caps);
    cap->setAlignment(Qt::AlignCenter);
    layout->addWidget(cap);
  }
  return caps;
}

void ShortcutsSheet::showShortcuts() {
  if (!isVisible()) {
    adjustSize();
    placeOnWindow(*this, parentWidget(), false);
    show();
  }
  raise();
  activateWindow();
  ui_->btnCloseShortcuts->setFocus();
}

}  // namespace velmara
