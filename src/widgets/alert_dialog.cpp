#include "widgets/alert_dialog.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QMouseEvent>
#include <QPushButton>
#include <QVBoxLayout>
#include <QWindow>

#include <algorithm>

#include "widgets/breakable_text.h"
#include "widgets/image_provider.h"

namespace velmara {
namespace {

constexpr int kIconSize = 48;
constexpr int kTextWidth = 360;

QLabel* makeText(const std::string& text, const char* role, QWidget* parent) {
  auto* label = new QLabel(breakableText(QString::fromStdString(text)), parent);
  label->setTextFormat(Qt::PlainText);  // File names come in here.
  label->setWordWrap(true);
  label->setMinimumWidth(kTextWidth);
  label->setMaximumWidth(kTextWidth);
  label->setProperty("role", QLatin1String(role));
  return label;
}

}  // namespace

AlertDialog::AlertDialog(const Alert& alert, QWidget* parent)
    : QDialog(parent, Qt::Dialog | Qt::FramelessWindowHint) {
  setProperty("role", QStringLiteral("alert"));
  setWindowTitle(QString::fromStdString(alert.messageText));
  setAccessibleName(QString::fromStdString(alert.messageText));
  setAccessibleDescription(QString::fromStdString(alert.informativeText));

  auto* icon = new QLabel(this);
  QPixmap picture = bundleImages().imageNamed(QStringLiteral("velmara-128"), 1.0);
  picture = picture.scaled(
      picture.size().scaled(QSize(kIconSize, kIconSize) * devicePixelRatioF(), Qt::KeepAspectRatio),
      Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
  picture.setDevicePixelRatio(devicePixelRatioF());
  icon->setPixmap(picture);

  auto* texts = new QVBoxLayout;
  texts->setSpacing(6);
  texts->addWidget(makeText(alert.messageText, "alertMessage", this));
  if (!alert.informativeText.empty()) {
    texts->addWidget(makeText(alert.informativeText, "dim", this));
  }
  auto* top = new QHBoxLayout;
  top->setSpacing(16);
  top->addWidget(icon, 0, Qt::AlignTop);
  top->addLayout(texts, 1);

  auto* buttons = new QHBoxLayout;
  buttons->setSpacing(8);
  std::vector<std::string> titles = alert.buttons;
  if (titles.empty()) titles.push_back(tr("OK").toStdString());
  lastButton_ = static_cast<int>(titles.size()) - 1;
  answer_ = lastButton_;
  for (int i = 0; i <= lastButton_; ++i) {
    auto* button =
        new QPushButton(QString::fromStdString(titles[static_cast<std::size_t>(i)]), this);
    button->setDefault(i == 0);
    connect(button, &QPushButton::clicked, this, [this, i] { finishWith(i); });
    buttons->insertWidget(0, button);
    if (i == 0) button->setFocus();
  }
  buttons->insertStretch(0);

  auto* whole = new QVBoxLayout(this);
  whole->setContentsMargins(20, 20, 20, 16);
  whole->setSpacing(18);
  whole->addLayout(top);
  whole->addLayout(buttons);
  whole->setSizeConstraint(QLayout::SetFixedSize);
}

void AlertDialog::finishWith(int button) {
  answer_ = button;
  done(button);
}

void AlertDialog::reject() {
  finishWith(lastButton_);
}

void AlertDialog::mousePressEvent(QMouseEvent* event) {
  pressedAt_ = event->globalPosition().toPoint();
}

void AlertDialog::mouseMoveEvent(QMouseEvent* event) {
  const QPoint distance = event->globalPosition().toPoint() - pressedAt_;
  if (event->buttons().testFlag(Qt::LeftButton) && windowHandle() != nullptr &&
      distance.manhattanLength() >= QApplication::startDragDistance()) {
    windowHandle()->startSystemMove();
  }
}

}  // namespace velmara
