#include "app/sheets/tips_sheet.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QShortcut>
#include <QVBoxLayout>

#include "app/sheets/page_dots.h"
#include "app/sheets/tip_picture.h"
#include "widgets/desktop_alerts.h"

namespace velmara {
namespace {

constexpr int kTextLines = 2;
constexpr double kTitleScale = 1.3;

}  // namespace

TipsSheet::TipsSheet(QWidget* mainWindow)
    : QDialog(mainWindow, Qt::Dialog | Qt::FramelessWindowHint),
      tips_(allTips()),
      pages_(static_cast<int>(tips_.size())),
      imgTip_(new TipPicture(this)),
      lblTipTitle_(new QLabel(this)),
      lblTipText_(new QLabel(this)),
      pageDots_(new PageDots(this)),
      btnBackPage_(new QPushButton(tr("Back"), this)),
      btnNextpage_(new QPushButton(this)) {
  setObjectName(QStringLiteral("windowTips"));
  setProperty("role", "alert");
  setAttribute(Qt::WA_StyledBackground);
  setWindowModality(Qt::WindowModal);
  setWindowTitle(tr("Tips"));
  lblTipTitle_->setObjectName(QStringLiteral("lblTipTitle"));
  lblTipText_->setObjectName(QStringLiteral("lblTipText"));
  btnBackPage_->setObjectName(QStringLiteral("btnBackPage"));
  btnNextpage_->setObjectName(QStringLiteral("btnNextpage"));

  QFont title = font();
  title.setPointSizeF(title.pointSizeF() * kTitleScale);
  title.setWeight(QFont::DemiBold);
  lblTipTitle_->setFont(title);
  lblTipText_->setWordWrap(true);
  lblTipText_->setAlignment(Qt::AlignLeft | Qt::AlignTop);
  // One height for all pages, so that the buttons stay under the pointer.
  lblTipText_->setFixedHeight(lblTipText_->fontMetrics().lineSpacing() * kTextLines + 4);
  btnBackPage_->setAutoDefault(false);
  btnNextpage_->setDefault(true);

  auto* bottom = new QHBoxLayout;
  bottom->addWidget(btnBackPage_);
  bottom->addStretch();
  bottom->addWidget(pageDots_);
  bottom->addStretch();
  bottom->addWidget(btnNextpage_);
  auto* whole = new QVBoxLayout(this);
  whole->setContentsMargins(20, 20, 20, 16);
  whole->setSpacing(10);
  whole->addWidget(imgTip_);
  whole->addSpacing(4);
  whole->addWidget(lblTipTitle_);
  whole->addWidget(lblTipText_);
  whole->addSpacing(4);
  whole->addLayout(bottom);
  whole->setSizeConstraint(QLayout::SetFixedSize);

  connect(btnBackPage_, &QPushButton::clicked, this, &TipsSheet::btnBackPageTapped);
  connect(btnNextpage_, &QPushButton::clicked, this,
          [this] { pages_.isLast() ? accept() : btnNextpageTapped(); });
  connect(pageDots_, &PageDots::pageChosen, this, &TipsSheet::selectPage);
  addShortcuts();
  showPage();
}

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
  btnNextpage_->setFocus();
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
  imgTip_->setTopic(tip.topic);
  lblTipTitle_->setText(tip.title);
  lblTipText_->setText(tip.text);
  pageDots_->setPages(pages_.pageCount(), pages_.selectedIndex());
  // A disabled button would hand the focus on to the other one at every end.
  if (pages_.isFirst() && btnBackPage_->hasFocus()) btnNextpage_->setFocus();
  btnBackPage_->setEnabled(!pages_.isFirst());
  btnNextpage_->setText(pages_.isLast() ? tr("Done") : tr("Next"));
  // What a screen reader says of the sheet as a whole.
  setAccessibleName(tip.title);
  setAccessibleDescription(tip.text);
}

}  // namespace velmara
