#include "app/sheets/save_changes_sheet.h"

#include "ui_SaveChangesSheet.h"
#include "widgets/desktop_alerts.h"

namespace velmara {

SaveChangesSheet::SaveChangesSheet(QWidget* mainWindow)
    : QDialog(mainWindow, Qt::Dialog | Qt::FramelessWindowHint),
      ui_(std::make_unique<Ui::SaveChangesSheet>()) {
  ui_->setupUi(this);
  setAttribute(Qt::WA_StyledBackground);
  connect(ui_->btnSaveChanges, &QPushButton::clicked, this,
          &SaveChangesSheet::btnSaveChangesTapped);
  connect(ui_->btnDontSaveChanges, &QPushButton::clicked, this,
          &SaveChangesSheet::btnDontSaveChangesTapped);
  connect(ui_->btnCancelChanges, &QPushButton::clicked, this,
          &SaveChangesSheet::btnCancelChangesTapped);
}

SaveChangesSheet::~SaveChangesSheet() = default;

void SaveChangesSheet::showSheet(const std::string& header) {
  ui_->lblSaveChangeHeader->setText(breakableText(QString::fromStdString(header)));
  adjustSize();
  placeOnWindow(*this, parentWidget(), true);
  show();
  raise();
  activateWindow();
  ui_->btnSaveChanges->setFocus();  // Not on the button of the last answer.
}

void SaveChangesSheet::closeSheet() {
  hide();
}

}  // namespace velmara
