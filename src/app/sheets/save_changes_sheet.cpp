#include "app/sheets/save_changes_sheet.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "widgets/breakable_text.h"
#include "widgets/desktop_alerts.h"

namespace velmara {

SaveChangesSheet::SaveChangesSheet(QWidget* mainWindow)
    : QDialog(mainWindow, Qt::Dialog | Qt::FramelessWindowHint),
      lblSaveChangeHeader_(new QLabel(this)),
      btnSaveChanges_(new QPushButton(tr("Save"), this)) {
  setObjectName(QStringLiteral("windowSaveChanges"));
  setProperty("role", "alert");
  setAttribute(Qt::WA_StyledBackground);
  setModal(true);
  lblSaveChangeHeader_->setObjectName(QStringLiteral("lblSaveChangeHeader"));
  lblSaveChangeHeader_->setProperty("role", "alertMessage");
  lblSaveChangeHeader_->setTextFormat(Qt::PlainText);
  lblSaveChangeHeader_->setWordWrap(true);
  lblSaveChangeHeader_->setMinimumWidth(380);

  auto* dontSave = new QPushButton(tr("Don't Save"), this);
  auto* cancel = new QPushButton(tr("Cancel"), this);
  btnSaveChanges_->setObjectName(QStringLiteral("btnSaveChanges"));
  dontSave->setObjectName(QStringLiteral("btnDontSaveChanges"));
  cancel->setObjectName(QStringLiteral("btnCancelChanges"));
  btnSaveChanges_->setDefault(true);
  connect(btnSaveChanges_, &QPushButton::clicked, this, &SaveChangesSheet::btnSaveChangesTapped);
  connect(dontSave, &QPushButton::clicked, this, &SaveChangesSheet::btnDontSaveChangesTapped);
  connect(cancel, &QPushButton::clicked, this, &SaveChangesSheet::btnCancelChangesTapped);

  auto* buttons = new QHBoxLayout;
  buttons->setSpacing(10);
  buttons->addWidget(dontSave);
  buttons->addStretch();
  buttons->addWidget(cancel);
  buttons->addWidget(btnSaveChanges_);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(24, 22, 24, 20);
  layout->setSpacing(20);
  layout->addWidget(lblSaveChangeHeader_);
  layout->addLayout(buttons);
}

void SaveChangesSheet::showSheet(const std::string& header) {
  lblSaveChangeHeader_->setText(breakableText(QString::fromStdString(header)));
  adjustSize();
  placeOnWindow(*this, parentWidget(), true);
  show();
  raise();
  activateWindow();
  btnSaveChanges_->setFocus();  // Not on the button of the last answer.
}

void SaveChangesSheet::closeSheet() {
  hide();
}

}  // namespace velmara
