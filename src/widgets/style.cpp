#include "widgets/style.h"

#include <QApplication>
#include <QFile>
#include <QPalette>
#include <QProxyStyle>

#include <utility>

#include "widgets/image_provider.h"

namespace velmara::style {
namespace {

// A name that begins with another stands before it.
constexpr std::pair<const char*, QColor> kNames[] = {
    {"@kWindow", kWindow}, {"@kRaised", kRaised},     {"@kPressed", kPressed},
    {"@kBorder", kBorder}, {"@kTextDim", kTextDim},   {"@kTextDisabled", kTextDisabled},
    {"@kText", kText},     {"@kDark", kDark},         {"@kAccentDark", kAccentDark},
    {"@kAccent", kAccent}, {"@kSurround", kSurround}, {"@kFocusRing", kFocusRing},
    {"@kError", kError},
};

QPalette lightPalette() {
  QPalette palette;
  palette.setColor(QPalette::Window, kWindow);
  palette.setColor(QPalette::WindowText, kText);
  palette.setColor(QPalette::Base, kRaised);
  palette.setColor(QPalette::AlternateBase, kWindow);
  palette.setColor(QPalette::ToolTipBase, kRaised);
  palette.setColor(QPalette::ToolTipText, kText);
  palette.setColor(QPalette::PlaceholderText, kTextDim);
  palette.setColor(QPalette::Text, kText);
  palette.setColor(QPalette::Button, kWindow);
  palette.setColor(QPalette::ButtonText, kText);
  palette.setColor(QPalette::BrightText, kRaised);
  palette.setColor(QPalette::Highlight, kAccent);
  palette.setColor(QPalette::HighlightedText, kText);
  palette.setColor(QPalette::Link, kFocusRing);
  palette.setColor(QPalette::Light, kRaised);
  palette.setColor(QPalette::Midlight, kPressed);
  palette.setColor(QPalette::Mid, kBorder);
  palette.setColor(QPalette::Dark, kTextDim);
  palette.setColor(QPalette::Shadow, kDark);
  for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
    palette.setColor(QPalette::Disabled, role, kTextDisabled);
  }
  return palette;
}

// The menu bar asks for the picture of the button that it shows where its menus do not fit; ours
// fit into the smallest window. To find it the toolkit would load all its picture formats.
class ScreenStyle final : public QProxyStyle {
 public:
  ScreenStyle() : QProxyStyle(QStringLiteral("Fusion")) {}

  QIcon standardIcon(StandardPixmap icon, const QStyleOption* option,
                     const QWidget* widget) const override {
    if (icon == SP_ToolBarHorizontalExtensionButton) return {};
    return QProxyStyle::standardIcon(icon, option, widget);
  }
};

}  // namespace

QString resolved(const QString& sheet) {
  QString result = sheet;
  for (const auto& [name, color] : kNames) result.replace(QLatin1String(name), color.name());
  return result;
}

void apply(QApplication& application) {
  QApplication::setStyle(new ScreenStyle);
  QApplication::setPalette(lightPalette());
  bundleImages();  // The style sheet is packed with them.
  QFile sheet(QStringLiteral(":/ui/velmara.qss"));
  if (sheet.open(QIODevice::ReadOnly)) {
    application.setStyleSheet(resolved(QString::fromUtf8(sheet.readAll())));
  }
}

}  // namespace velmara::style
