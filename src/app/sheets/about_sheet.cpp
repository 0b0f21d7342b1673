#include "app/sheets/about_sheet.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QIcon>

#include <utility>

#include "app/sheets/sheet_title.h"
#include "app/sheets/used_libraries.h"
#include "ui_AboutSheet.h"
#include "widgets/desktop_alerts.h"

namespace velmara {
namespace {

constexpr int kIconSide = 64;

}  // namespace

AboutSheet::AboutSheet(std::string version, QWidget* mainWindow)
    : QDialog(mainWindow, Qt::Dialog | Qt::FramelessWindowHint),
      ui_(std::make_unique<Ui::AboutSheet>()),
      version_(std::move(version)) {
  ui_->setupUi(this);
  setAttribute(Qt::WA_StyledBackground);
  // The large one, made smaller: sharp at twice the density too.
  const QIcon icon(QStringLiteral(":/images/velmara-128.png"));
  ui_->imgAbout->setPixmap(icon.pixmap(QSize(kIconSide, kIconSide), devicePixelRatioF()));
  ui_->imgAbout->setAlignment(Qt::AlignTop);
  ui_->lblAboutTitle->setFont(sheetTitleFont(font()));
  ui_->lblAboutTitle->setText("Velmara " + QString::fromStdString(version_));
  listLibraries();
  connect(ui_->btnCopyAbout, &QPushButton::clicked, this, [this] {
    QGuiApplication::clipboard()->setText(QString::fromStdString(versionsText(version_)));
  });
  connect(ui_->btnCloseAbout, &QPushButton::clicked, this, &AboutSheet::accept);
}

AboutSheet::~AboutSheet() = default;

void AboutSheet::listLibraries() {
  int row = 0;
  for (const UsedLibrary& library : usedLibraries()) {
    int column = 0;
    for (const std::string& text : {library.name, library.version, library.licence}) {
      auto* label = new QLabel(QString::fromStdString(text), this);
      label->setTextFormat(Qt::PlainText);
      label->setProperty("role", "fact");
      ui_->vwLibraries->addWidget(label, row, column++);
    }
    ++row;
  }
}

void AboutSheet::showAbout() {
  if (!isVisible()) {
    adjustSize();
    placeOnWindow(*this, parentWidget(), false);
    show();
  }
  raise();
  activateWindow();
  ui_->btnCloseAbout->setFocus();
}

}  // namespace velmara
