#include "widgets/desktop_alerts.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QMouseEvent>
#include <QPointer>
#include <QPushButton>
#include <QVBoxLayout>
#include <QWindow>

#include <utility>

#include "widgets/image_provider.h"

namespace velmara {
namespace {

constexpr int kLongestWord = 30;
constexpr QChar kZeroWidthSpace(0x200B);

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

QString breakableText(const QString& text) {
  QString result;
  int length = 0;
  for (const QChar c : text) {
    length = c.isSpace() ? 0 : length + 1;
    // Not between the halves of a character, nor before what is drawn upon the last one.
    if (length > kLongestWord && !c.isLowSurrogate() && !c.isMark()) result += kZeroWidthSpace;
    result += c;
  }
  return result;
}

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

void placeOnWindow(QWidget& dialog, const QWidget* window, bool asSheet) {
  if (window == nullptr) return;
  dialog.adjustSize();
  const QRect frame = window->geometry();
  QRect place(QPoint(), dialog.size());
  place.moveCenter(frame.center());
  constexpr int kSheetsTop = 3;
  if (asSheet) place.moveTop(frame.top() + (frame.height() - place.height()) / kSheetsTop);
  dialog.move(place.topLeft());
}

// A sheet that is open over the main window would cover an alert of the main window's.
QWidget* windowInFront(QWidget* mainWindow) {
  if (QWidget* modal = QApplication::activeModalWidget()) return modal;
  QWidget* active = QApplication::activeWindow();
  return active != nullptr && active->isVisible() ? active : mainWindow;
}

int DesktopAlerts::runModal(const Alert& alert) {
  QWidget* window = windowInFront(mainWindow_);
  // On the heap: its window, and the dialog with it, may go while the dialog waits.
  const QPointer<AlertDialog> dialog = new AlertDialog(alert, window);
  placeOnWindow(*dialog, window, false);  // cppcheck-suppress nullPointerRedundantCheck
  dialog->exec();                         // cppcheck-suppress nullPointerRedundantCheck
  if (!dialog) return alert.buttons.empty() ? 0 : static_cast<int>(alert.buttons.size()) - 1;
  const int answer = dialog->answer();
  delete dialog;
  return answer;
}

void DesktopAlerts::beginSheet(const Alert& alert, Completion completion) {
  QWidget* window = windowInFront(mainWindow_);
  auto* dialog = new AlertDialog(alert, window);
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  placeOnWindow(*dialog, window, true);
  QObject::connect(dialog, &QDialog::finished, dialog,
                   [dialog, completion = std::move(completion)] {
                     if (completion) completion(dialog->answer());
                   });
  dialog->open();
}

}  // namespace velmara
