#include "app/sheets/tips_sheet.h"

#include <QShortcut>

#include "app/sheets/sheet_title.h"
#include "ui_TipsSheet.h"
#include "widgets/desktop_alerts.h"

namespace velmara {
namespace {

constexpr int kTextLines = 2;

}  // namespace

TipsSheet::TipsSheet(QWidget* mainWindow)
    : QDialog(mainWindow, Qt::Dialog | Qt::FramelessWindowHint),
      ui_(std::make_unique<Ui::TipsSheet>()),
      tips_(allTips()),
      pages_(static_cast<int>(tips_.size())) {
  ui_->setupUi(this);
  setAttribute(Qt::WA_StyledBackground);
  ui_->lblTipTitle->setFont(sheetTitleFont(font()));
  // One height for all pages, so that the buttons stay under the pointer.
  ui_->lblTipText->setFixedHeight(ui_->lblTipText->fontMetrics().lineSpacing() * kTextLines + 4);

  connect(ui_->btnBackPage, &QPushButton::clicked, this, &TipsSheet::btnBackPageTapped);
  connect(ui_->btnNextpage, &QPushButton::clicked, this,
          [this] { pages_.isLast() ? accept() : btnNextpageTapped(); });
  connect(ui_->pageDots, &PageDots::pageChosen, this, &TipsSheet::selectPage);
  addShortcuts();
  showPage();
}

TipsSheet::~TipsSheet() = default;

void TipsSheet::addShortcuts() {
  const auto add = [this](Qt::Key key, auto action) {
    connect(new QShortcut(key, this), &QShortcut::activated, this, action);
  };
  for (const Qt::Key key : {Qt::Key_Left, Qt::Key_PageUp})
    add(key, [this] { btnBackPageTapped(); });
  for (const Qt::Key key : {Qt::Key_Right, Qt::Key_PageDown}) {
    add(key, [this] { btnNextpageTapped(); });
  }
  add(Qt::Key_Home, [this] { selectPage(0); });
  add(Qt::Key_End, [this] { selectPage(pages_.pageCount() - 1); });
}

void TipsSheet::showTipsScreen() {
  selectPage(0);
  ui_->btnNextpage->setFocus();
  if (!isVisible()) {
    adjustSize();
    placeOnWindow(*this, parentWidget(), false);
    show();
  }
  raise();
  activateWindow();
}

void TipsSheet::btnBackPageTapped() {
  if (pages_.navigateBack()) showPage();
}

void TipsSheet::btnNextpageTapped() {
  if (pages_.navigateForward()) showPage();
}

void TipsSheet::selectPage(int index) {
  if (pages_.select(index)) showPage();
}

void TipsSheet::showPage() {
  const Tip& tip = tips_[static_cast<std::size_t>(pages_.selectedIndex())];
  ui_->imgTip->setTopic(tip.topic);
  ui_->lblTipTitle->setText(tip.title);
  ui_->lblTipText->setText(tip.text);
  ui_->pageDots->setPages(pages_.pageCount(), pages_.selectedIndex());
  // A disabled button would hand the focus on to the other one at every end.
  if (pages_.isFirst() && ui_->btnBackPage->hasFocus()) ui_->btnNextpage->setFocus();
  ui_->btnBackPage->setEnabled(!pages_.isFirst());
  ui_->btnNextpage->setText(pages_.isLast() ? tr("Done") : tr("Next"));
  // What a screen reader says of the sheet as a whole.
  setAccessibleName(tip.title);
  setAccessibleDescription(tip.text);
}

}  // namespace velmara
