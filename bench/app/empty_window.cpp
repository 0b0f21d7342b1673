// The least a window costs: what start_up.py compares Velmara's with. It has the size that
// Velmara's takes on the same screen, as each pixel's memory costs its time.
#include <QApplication>
#include <QMainWindow>
#include <QScreen>

#include "preview/window_geometry.h"

int main(int argc, char** argv) {
  const QApplication application(argc, argv);
  QMainWindow window;
  const QSizeF screen = QGuiApplication::primaryScreen()->availableGeometry().size();
  const velmara::Rect frame = velmara::mainWindowGeometry({screen.width(), screen.height()}).frame;
  window.resize(QSizeF(frame.width, frame.height).toSize());
  window.show();
  return QApplication::exec();
}
